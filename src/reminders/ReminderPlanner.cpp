#include "reminders/ReminderPlanner.h"

#include <algorithm>

namespace brindlet::ReminderPlanner {
namespace {

ReminderRequest makeRequest(const FocusTask& task, ReminderKind kind, Instant fireDate,
                            std::string body) {
  return {.id = identifier(task.id, kind),
          .taskID = task.id,
          .kind = kind,
          .fireDate = fireDate,
          .title = task.title,
          .body = std::move(body)};
}

}  // namespace

std::string identifier(const Uuid& taskID, ReminderKind kind) {
  return "brindlet.task." + taskID.uppercaseText() + "." +
         std::string(kReminderKindText.text(kind));
}

std::vector<ReminderRequest> requests(const FocusTask& task) {
  if (task.status == TaskStatus::completed || task.status == TaskStatus::archived) return {};
  if (!task.reminder || !task.reminder->isEnabled || !task.scheduledStart) return {};
  const Instant start = *task.scheduledStart;
  std::vector<ReminderRequest> planned;
  if (task.reminder->remindTenMinutesBefore) {
    planned.push_back(makeRequest(task, ReminderKind::preStart,
                                  start.advanced(-kPreStartLeadSeconds), "Starts in 10 minutes"));
  }
  planned.push_back(makeRequest(task, ReminderKind::start, start, "Ready to begin"));
  if (task.reminder->remindWhenOverdue) {
    const std::int64_t minutes = task.estimatedMinutes.value_or(kAssumedEstimateMinutes);
    planned.push_back(makeRequest(task, ReminderKind::overdue, start.advanced(double(minutes) * 60),
                                  "Still unfinished—reschedule or complete it"));
  }
  std::stable_sort(
      planned.begin(), planned.end(),
      [](const ReminderRequest& a, const ReminderRequest& b) { return a.fireDate < b.fireDate; });
  return planned;
}

}  // namespace brindlet::ReminderPlanner

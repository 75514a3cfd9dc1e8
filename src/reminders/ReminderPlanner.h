#pragma once

#include <string>
#include <vector>

#include "records/FocusTask.h"
#include "reminders/ReminderRequest.h"

/// Which notifications a task should have, and when. Reads no clock: a reminder in the past
/// is still planned, and delivery decides what to do with it.
namespace brindlet::ReminderPlanner {

inline constexpr double kPreStartLeadSeconds = 600;
inline constexpr std::int64_t kAssumedEstimateMinutes = 60;

/// "brindlet.task.{taskID}.{kind}", the one place this identifier is formed.
[[nodiscard]] std::string identifier(const Uuid& taskID, ReminderKind kind);

/// The task's reminders, earliest first; none for a finished task, a task whose reminders are
/// off, or one without a scheduled start.
[[nodiscard]] std::vector<ReminderRequest> requests(const FocusTask& task);

}  // namespace brindlet::ReminderPlanner

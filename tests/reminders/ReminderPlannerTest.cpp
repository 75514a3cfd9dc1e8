#include <gtest/gtest.h>

#include "Builders.h"
#include "reminders/ReminderPlanner.h"

namespace brindlet {
namespace {

using testing::makeTask;

const Instant kTen = *Instant::fromIso8601("2026-11-23T10:00:00Z");

FocusTask scheduledTask(TaskReminder reminder, std::optional<std::int64_t> estimate) {
  FocusTask task = makeTask().titled("Standup");
  task.scheduledStart = kTen;
  task.reminder = reminder;
  task.estimatedMinutes = estimate;
  return task;
}

std::vector<std::string> fireTimes(const std::vector<ReminderRequest>& requests) {
  std::vector<std::string> times;
  for (const auto& request : requests) times.push_back(request.fireDate.iso8601().substr(11, 5));
  return times;
}

TEST(ReminderPlannerTest, TaskAtTenWithAllFlagsAndThirtyMinutesGivesTenToTenTenAndHalfPast) {
  const auto requests = ReminderPlanner::requests(scheduledTask({true, true, true}, 30));
  EXPECT_EQ(fireTimes(requests), (std::vector<std::string>{"09:50", "10:00", "10:30"}));
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].kind, ReminderKind::preStart);
  EXPECT_EQ(requests[0].body, "Starts in 10 minutes");
  EXPECT_EQ(requests[1].body, "Ready to begin");
  EXPECT_EQ(requests[2].body, "Still unfinished—reschedule or complete it");
  for (const auto& request : requests) EXPECT_EQ(request.title, "Standup");
}

TEST(ReminderPlannerTest, WithoutEstimateTheOverdueReminderIsAtEleven) {
  const auto requests = ReminderPlanner::requests(scheduledTask({true, false, true}, std::nullopt));
  EXPECT_EQ(fireTimes(requests), (std::vector<std::string>{"10:00", "11:00"}));
  EXPECT_EQ(requests.back().kind, ReminderKind::overdue);
}

TEST(ReminderPlannerTest, WithBothFlagsOffExactlyTheStartReminderComesOut) {
  const auto requests = ReminderPlanner::requests(scheduledTask({true, false, false}, 30));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].kind, ReminderKind::start);
  EXPECT_EQ(requests[0].fireDate, kTen);
}

TEST(ReminderPlannerTest, CompletedTaskGivesNoneEvenWithEverythingSet) {
  FocusTask task = scheduledTask({true, true, true}, 30);
  task.status = TaskStatus::completed;
  EXPECT_TRUE(ReminderPlanner::requests(task).empty());
  task.status = TaskStatus::archived;
  EXPECT_TRUE(ReminderPlanner::requests(task).empty());
}

TEST(ReminderPlannerTest, DisabledReminderGivesNoneWhateverItsFlagsSay) {
  EXPECT_TRUE(ReminderPlanner::requests(scheduledTask({false, true, true}, 30)).empty());
  EXPECT_TRUE(ReminderPlanner::requests(makeTask()).empty());
}

TEST(ReminderPlannerTest, TaskWithoutScheduledStartGivesNone) {
  FocusTask task = scheduledTask({true, true, true}, 30);
  task.scheduledStart.reset();
  task.plannedDay = LocalDay{2026, 11, 23};
  EXPECT_TRUE(ReminderPlanner::requests(task).empty());
}

TEST(ReminderPlannerTest, EachRequestIdIsTheIdentifierOfItsSlot) {
  const FocusTask task = scheduledTask({true, true, true}, 30);
  for (const auto& request : ReminderPlanner::requests(task)) {
    EXPECT_EQ(request.id, ReminderPlanner::identifier(task.id, request.kind));
    EXPECT_EQ(request.taskID, task.id);
  }
  EXPECT_EQ(ReminderPlanner::identifier(task.id, ReminderKind::preStart),
            "brindlet.task." + task.id.uppercaseText() + ".preStart");
}

TEST(ReminderPlannerTest, RunningAndPausedTasksKeepTheirRemindersAndPastOnesAreKept) {
  FocusTask task = scheduledTask({true, false, false}, 30);
  task.scheduledStart = Instant(0);
  for (const TaskStatus status : {TaskStatus::pending, TaskStatus::active, TaskStatus::paused}) {
    task.status = status;
    EXPECT_EQ(ReminderPlanner::requests(task).size(), 1U);
  }
}

TEST(ReminderPlannerTest, RequestJsonRoundTrips) {
  const auto request = ReminderPlanner::requests(scheduledTask({true, true, true}, 30)).front();
  JsonWriter out;
  toJson(out, request);
  const JsonDocument document(out.text());
  EXPECT_EQ(reminderRequestFromJson(document.root()), request);
}

}  // namespace
}  // namespace brindlet

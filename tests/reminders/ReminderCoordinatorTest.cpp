#include <gtest/gtest.h>

#include "Builders.h"
#include "RecordingReminderScheduler.h"
#include "reminders/ReminderCoordinator.h"

namespace brindlet {
namespace {

using testing::makeTask;
using testing::RecordingReminderScheduler;

FocusTask taskWithReminders(Instant start) {
  FocusTask task = makeTask().titled("Review").estimated(30);
  task.scheduledStart = start;
  task.reminder = TaskReminder{true, true, true};
  return task;
}

class ReminderCoordinatorTest : public ::testing::Test {
 protected:
  std::shared_ptr<RecordingReminderScheduler> scheduler =
      std::make_shared<RecordingReminderScheduler>();
  ReminderCoordinator coordinator{scheduler};
  Instant start = *Instant::fromIso8601("2026-11-23T10:00:00Z");
};

TEST_F(ReminderCoordinatorTest, SyncOfACompletedTaskCancelsItsRequestsAndNeedsNoPermission) {
  FocusTask task = taskWithReminders(start);
  ASSERT_FALSE(coordinator.sync(task).has_value());
  scheduler->calls.clear();
  scheduler->status = ReminderAuthorization::notDetermined;
  task.status = TaskStatus::completed;
  EXPECT_FALSE(coordinator.sync(task).has_value());
  EXPECT_EQ(scheduler->calls, std::vector<std::string>{"cancel"});
  EXPECT_TRUE(scheduler->pending.empty());
}

TEST_F(ReminderCoordinatorTest, RefusedPromptGivesPermissionDeniedWithoutCancelOrSchedule) {
  scheduler->status = ReminderAuthorization::notDetermined;
  scheduler->promptAnswer = RecordingReminderScheduler::PromptAnswer::refuse;
  EXPECT_EQ(coordinator.sync(taskWithReminders(start)), ReminderWarning::permissionDenied());
  EXPECT_EQ(scheduler->calls,
            (std::vector<std::string>{"authorizationStatus", "requestAuthorization"}));
}

TEST_F(ReminderCoordinatorTest, GrantedPromptSchedulesTheRequests) {
  scheduler->status = ReminderAuthorization::notDetermined;
  EXPECT_FALSE(coordinator.sync(taskWithReminders(start)).has_value());
  EXPECT_EQ(scheduler->pending.size(), 3U);
}

TEST_F(ReminderCoordinatorTest, FailingPromptGivesSchedulingFailedWithItsText) {
  scheduler->status = ReminderAuthorization::notDetermined;
  scheduler->promptAnswer = RecordingReminderScheduler::PromptAnswer::fail;
  EXPECT_EQ(coordinator.sync(taskWithReminders(start)),
            ReminderWarning::schedulingFailed("The prompt failed."));
}

TEST_F(ReminderCoordinatorTest, DeniedPermissionLeavesEarlierRequestsAlone) {
  const FocusTask task = taskWithReminders(start);
  ASSERT_FALSE(coordinator.sync(task).has_value());
  scheduler->status = ReminderAuthorization::denied;
  EXPECT_EQ(coordinator.sync(taskWithReminders(start.advanced(3600))),
            ReminderWarning::permissionDenied());
  EXPECT_EQ(scheduler->pending.size(), 3U);
}

TEST_F(ReminderCoordinatorTest, WithPermissionTheCallsAreCancelThenSchedule) {
  EXPECT_FALSE(coordinator.sync(taskWithReminders(start)).has_value());
  EXPECT_EQ(scheduler->calls,
            (std::vector<std::string>{"authorizationStatus", "cancel", "schedule"}));
}

TEST_F(ReminderCoordinatorTest, ScheduleFailureGivesSchedulingFailedWithThePlatformsText) {
  scheduler->scheduleFailure = "Notification service not reachable";
  EXPECT_EQ(coordinator.sync(taskWithReminders(start)),
            ReminderWarning::schedulingFailed("Notification service not reachable"));
}

TEST_F(ReminderCoordinatorTest, ResavingWithAnEarlierStartLeavesExactlyTheNewRequests) {
  FocusTask task = taskWithReminders(start);
  ASSERT_FALSE(coordinator.sync(task).has_value());
  task.scheduledStart = start.advanced(-7200);
  ASSERT_FALSE(coordinator.sync(task).has_value());
  ASSERT_EQ(scheduler->pending.size(), 3U);
  for (const ReminderRequest& request : ReminderPlanner::requests(task)) {
    ASSERT_TRUE(scheduler->pending.contains(request.id));
    EXPECT_EQ(scheduler->pending.at(request.id), request);
  }
}

}  // namespace
}  // namespace brindlet

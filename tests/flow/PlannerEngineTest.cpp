#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Builders.h"
#include "flow/PlannerEngine.h"
#include "support/Calendar.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeTask;

constexpr LocalDay kDay{2026, 11, 21};
constexpr LocalDay kOtherDay{2026, 11, 22};

FocusTask taskAt(std::string title, std::int64_t position,
                 TaskPriority priority = TaskPriority::normal,
                 TaskStatus status = TaskStatus::pending) {
  FocusTask task = makeTask().titled(std::move(title)).plannedOn(kDay).withPriority(priority);
  task.manualPosition = position;
  task.status = status;
  return task;
}

std::vector<std::string> titles(const std::vector<FocusTask>& tasks) {
  std::vector<std::string> result;
  for (const FocusTask& task : tasks) result.push_back(task.title);
  return result;
}

std::int64_t positionOf(const std::vector<FocusTask>& tasks, const std::string& title) {
  for (const FocusTask& task : tasks) {
    if (task.title == title) return task.manualPosition;
  }
  ADD_FAILURE() << "no task " << title;
  return -1;
}

class PlannerEngineTest : public ::testing::Test {
 protected:
  Calendar calendar_ = Calendar::gregorianUtc();
};

TEST_F(PlannerEngineTest, EmptyListHasEmptyQueueNoNextTaskNoWorkloadAndPositionZero) {
  const std::vector<FocusTask> none;
  EXPECT_TRUE(PlannerEngine::queueTasks(none, kDay).empty());
  EXPECT_TRUE(PlannerEngine::orderedTasks(none, kDay, kTestNow, calendar_).empty());
  EXPECT_FALSE(PlannerEngine::nextTask(none, kDay, kTestNow, calendar_).has_value());
  EXPECT_EQ(PlannerEngine::workload(none, kDay), (WorkloadSummary{0, 0}));
  EXPECT_EQ(PlannerEngine::nextManualPosition(none, kDay, TaskPriority::normal), 0);
}

TEST_F(PlannerEngineTest, CompletedTaskStaysAtEndOfQueueAndCountsNowhereElse) {
  FocusTask done = taskAt("Done", 0, TaskPriority::critical, TaskStatus::completed);
  done.estimatedMinutes = 30;
  done.manualPosition = 7;
  const std::vector<FocusTask> tasks = {done, taskAt("Open", 1, TaskPriority::low)};

  EXPECT_EQ(titles(PlannerEngine::queueTasks(tasks, kDay)),
            (std::vector<std::string>{"Open", "Done"}));
  EXPECT_EQ(titles(PlannerEngine::orderedTasks(tasks, kDay, kTestNow, calendar_)),
            std::vector<std::string>{"Open"});
  EXPECT_EQ(PlannerEngine::workload(tasks, kDay), (WorkloadSummary{1, 0}));
  // Position 7 of the completed task is ignored: the open task at 1 is the last.
  EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, kDay, TaskPriority::normal), 2);
}

TEST_F(PlannerEngineTest, ArchivedTaskIsInNoneOfThem) {
  FocusTask archived = taskAt("Archived", 9, TaskPriority::critical, TaskStatus::archived);
  archived.estimatedMinutes = 60;
  const std::vector<FocusTask> tasks = {archived};

  EXPECT_TRUE(PlannerEngine::queueTasks(tasks, kDay).empty());
  EXPECT_TRUE(PlannerEngine::orderedTasks(tasks, kDay, kTestNow, calendar_).empty());
  EXPECT_FALSE(PlannerEngine::nextTask(tasks, kDay, kTestNow, calendar_).has_value());
  EXPECT_EQ(PlannerEngine::workload(tasks, kDay), (WorkloadSummary{0, 0}));
  EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, kDay, TaskPriority::normal), 0);
}

TEST_F(PlannerEngineTest, ReorderDownLandsAfterTargetAndUpLandsBeforeIt) {
  const std::vector<FocusTask> tasks = {taskAt("A", 0), taskAt("B", 1), taskAt("C", 2)};

  const std::vector<FocusTask> down = PlannerEngine::reorder(tasks, tasks[0].id, tasks[2].id, kDay);
  EXPECT_EQ(positionOf(down, "B"), 0);
  EXPECT_EQ(positionOf(down, "C"), 1);
  EXPECT_EQ(positionOf(down, "A"), 2);
  EXPECT_EQ(titles(down), (std::vector<std::string>{"A", "B", "C"}));

  const std::vector<FocusTask> up = PlannerEngine::reorder(tasks, tasks[2].id, tasks[0].id, kDay);
  EXPECT_EQ(positionOf(up, "C"), 0);
  EXPECT_EQ(positionOf(up, "A"), 1);
  EXPECT_EQ(positionOf(up, "B"), 2);
}

TEST_F(PlannerEngineTest, ReorderOntoItselfOrOntoCompletedTaskChangesNothing) {
  const std::vector<FocusTask> tasks = {
      taskAt("A", 0), taskAt("B", 1),
      taskAt("Done", 2, TaskPriority::normal, TaskStatus::completed)};
  EXPECT_EQ(PlannerEngine::reorder(tasks, tasks[0].id, tasks[0].id, kDay), tasks);
  EXPECT_EQ(PlannerEngine::reorder(tasks, tasks[0].id, tasks[2].id, kDay), tasks);
  EXPECT_EQ(PlannerEngine::reorder(tasks, tasks[2].id, tasks[0].id, kDay), tasks);
  EXPECT_EQ(PlannerEngine::reorder(tasks, Uuid::random(), tasks[1].id, kDay), tasks);
}

TEST_F(PlannerEngineTest, ReorderRenumbersOnlyTheOpenQueueOfTheDay) {
  FocusTask elsewhere = taskAt("Elsewhere", 5);
  elsewhere.plannedDay = kOtherDay;
  const FocusTask done = taskAt("Done", 0, TaskPriority::normal, TaskStatus::completed);
  const std::vector<FocusTask> tasks = {
      taskAt("A", 4), taskAt("B", 8), elsewhere, done,
      taskAt("Active", 12, TaskPriority::low, TaskStatus::active)};

  const std::vector<FocusTask> result =
      PlannerEngine::reorder(tasks, tasks[1].id, tasks[0].id, kDay);
  EXPECT_EQ(positionOf(result, "Active"), 0);
  EXPECT_EQ(positionOf(result, "B"), 1);
  EXPECT_EQ(positionOf(result, "A"), 2);
  EXPECT_EQ(positionOf(result, "Elsewhere"), 5);
  EXPECT_EQ(positionOf(result, "Done"), 0);
  EXPECT_EQ(result[1].updatedAt, tasks[1].updatedAt);
}

TEST_F(PlannerEngineTest, SamePositionSortsByPriorityThenByCreation) {
  FocusTask olderNormal = taskAt("Older normal", 3);
  olderNormal.createdAt = kTestNow.advanced(-60);
  FocusTask newerNormal = taskAt("Newer normal", 3);
  const FocusTask high = taskAt("High", 3, TaskPriority::high);
  const std::vector<FocusTask> tasks = {newerNormal, high, olderNormal};

  EXPECT_EQ(titles(PlannerEngine::queueTasks(tasks, kDay)),
            (std::vector<std::string>{"High", "Older normal", "Newer normal"}));
}

TEST_F(PlannerEngineTest, ManualPositionBeatsPriority) {
  const std::vector<FocusTask> tasks = {taskAt("Critical", 5, TaskPriority::critical),
                                        taskAt("Low", 1, TaskPriority::low)};
  EXPECT_EQ(titles(PlannerEngine::queueTasks(tasks, kDay)),
            (std::vector<std::string>{"Low", "Critical"}));
}

TEST_F(PlannerEngineTest, ActiveTaskWithLargestPositionHeadsTheQueue) {
  const std::vector<FocusTask> tasks = {
      taskAt("First", 0, TaskPriority::critical),
      taskAt("Paused", 1, TaskPriority::normal, TaskStatus::paused),
      taskAt("Active", 99, TaskPriority::low, TaskStatus::active)};
  EXPECT_EQ(titles(PlannerEngine::queueTasks(tasks, kDay)),
            (std::vector<std::string>{"Active", "First", "Paused"}));
  EXPECT_EQ(PlannerEngine::nextTask(tasks, kDay, kTestNow, calendar_)->title, "Active");
}

TEST_F(PlannerEngineTest, ScheduledStartAtNowIsStartableAndOneSecondLaterIsNot) {
  FocusTask now = taskAt("Now", 1);
  now.scheduledStart = kTestNow;
  FocusTask later = taskAt("Later", 0);
  later.scheduledStart = kTestNow.advanced(1);
  const std::vector<FocusTask> tasks = {now, later};

  EXPECT_EQ(titles(PlannerEngine::orderedTasks(tasks, kDay, kTestNow, calendar_)),
            std::vector<std::string>{"Now"});
  EXPECT_EQ(PlannerEngine::nextTask(tasks, kDay, kTestNow, calendar_)->title, "Now");
  // Scheduling takes no part in the queue itself or in the workload.
  EXPECT_EQ(PlannerEngine::queueTasks(tasks, kDay).size(), 2U);
  EXPECT_EQ(PlannerEngine::workload(tasks, kDay).taskCount, 2);
}

TEST_F(PlannerEngineTest, DayWhoseOpenTasksAreAllLaterHasNoNextTask) {
  FocusTask later = taskAt("Later", 0);
  later.scheduledStart = kTestNow.advanced(3600);
  const std::vector<FocusTask> tasks = {later};
  EXPECT_FALSE(PlannerEngine::nextTask(tasks, kDay, kTestNow, calendar_).has_value());
}

TEST_F(PlannerEngineTest, TaskWithoutEstimateCountsButAddsNoMinutes) {
  FocusTask estimated = taskAt("Estimated", 0);
  estimated.estimatedMinutes = 45;
  FocusTask other = taskAt("Other day", 0);
  other.plannedDay = kOtherDay;
  other.estimatedMinutes = 100;
  const std::vector<FocusTask> tasks = {
      estimated, taskAt("Unestimated", 1), other,
      taskAt("Paused", 2, TaskPriority::normal, TaskStatus::paused)};
  EXPECT_EQ(PlannerEngine::workload(tasks, kDay), (WorkloadSummary{3, 45}));
}

TEST_F(PlannerEngineTest, NextPositionForAbsentDayLooksOnlyAtUnplannedOpenTasks) {
  FocusTask unplanned = makeTask().titled("Unplanned");
  unplanned.manualPosition = 3;
  FocusTask unplannedDone = makeTask().titled("Unplanned done").withStatus(TaskStatus::completed);
  unplannedDone.manualPosition = 10;
  const std::vector<FocusTask> tasks = {unplanned, unplannedDone, taskAt("Planned", 20)};

  EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, std::nullopt, TaskPriority::normal), 4);
  EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, kDay, TaskPriority::normal), 21);
  EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, kOtherDay, TaskPriority::normal), 0);
}

TEST_F(PlannerEngineTest, PriorityDoesNotChangeWhereNewTaskGoes) {
  const std::vector<FocusTask> tasks = {taskAt("A", 0, TaskPriority::low), taskAt("B", 2)};
  for (const TaskPriority priority : kAllTaskPriorities) {
    EXPECT_EQ(PlannerEngine::nextManualPosition(tasks, kDay, priority), 3);
  }
}

TEST_F(PlannerEngineTest, UnplannedTaskIsOnNoDay) {
  const std::vector<FocusTask> tasks = {makeTask().titled("Unplanned")};
  EXPECT_TRUE(PlannerEngine::queueTasks(tasks, kDay).empty());
  EXPECT_EQ(PlannerEngine::workload(tasks, kDay), (WorkloadSummary{0, 0}));
}

}  // namespace
}  // namespace brindlet

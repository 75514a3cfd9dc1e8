#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Builders.h"
#include "TempDir.h"
#include "flow/TaskSessionEngine.h"
#include "flow/TaskSessionError.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"
#include "support/Calendar.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeTask;
using testing::TempDir;

constexpr LocalDay kDay{2026, 11, 21};

FocusTask taskAt(std::string title, std::int64_t position,
                 TaskStatus status = TaskStatus::pending) {
  FocusTask task = makeTask().titled(std::move(title)).plannedOn(kDay).withStatus(status);
  task.manualPosition = position;
  return task;
}

FocusTask runningSince(std::string title, Instant segmentStart) {
  FocusTask task = taskAt(std::move(title), 0, TaskStatus::active);
  task.startedAt = segmentStart;
  task.activeSegmentStartedAt = segmentStart;
  return task;
}

template <typename Body>
TaskSessionError sessionErrorOf(Body&& body) {
  try {
    body();
  } catch (const TaskSessionError& error) {
    return error;
  }
  throw std::logic_error("no TaskSessionError was raised");
}

class TaskSessionEngineTest : public ::testing::Test {
 protected:
  // Replaces the plan with `tasks` and builds the store and engine over it.
  void seed(std::vector<FocusTask> tasks, Calendar calendar = Calendar::gregorianUtc()) {
    PersistedState state = PersistedState::initial();
    state.tasks = std::move(tasks);
    local_.save(state);
    store_.emplace(local_);
    engine_.emplace(*store_, std::move(calendar));
  }

  [[nodiscard]] std::int64_t revision() { return store_->snapshot().revision(); }

  [[nodiscard]] FocusTask stored(const Uuid& id) {
    for (const FocusTask& task : local_.load().tasks) {
      if (task.id == id) return task;
    }
    ADD_FAILURE() << "no stored task " << id.uppercaseText();
    return {};
  }

  TempDir dir_;
  LocalStore local_{dir_ / "state.json"};
  std::optional<TaskStore> store_;
  std::optional<TaskSessionEngine> engine_;
};

TEST_F(TaskSessionEngineTest, StartMakesTaskActiveAndOpensSegment) {
  const FocusTask task = taskAt("Report", 0);
  seed({task});

  const TaskStoreSnapshot result = engine_->start(task.id, kTestNow, 0);

  const FocusTask started = stored(task.id);
  EXPECT_EQ(started.status, TaskStatus::active);
  EXPECT_EQ(started.startedAt, kTestNow);
  EXPECT_EQ(started.activeSegmentStartedAt, kTestNow);
  EXPECT_EQ(started.updatedAt, kTestNow);
  EXPECT_EQ(result.revision(), 1);
  EXPECT_EQ(engine_->activeTaskID(), task.id);
}

TEST_F(TaskSessionEngineTest, StartOfPausedTaskKeepsStartedAtAndFocusTime) {
  FocusTask paused = taskAt("Report", 0, TaskStatus::paused);
  paused.startedAt = kTestNow.advanced(-3600);
  paused.accumulatedFocusSeconds = 600;
  seed({paused});

  (void)engine_->start(paused.id, kTestNow, 0);

  const FocusTask started = stored(paused.id);
  EXPECT_EQ(started.status, TaskStatus::active);
  EXPECT_EQ(started.startedAt, kTestNow.advanced(-3600));
  EXPECT_EQ(started.accumulatedFocusSeconds, 600);
  EXPECT_EQ(started.activeSegmentStartedAt, kTestNow);
}

TEST_F(TaskSessionEngineTest, StartWhileAnotherTaskIsActiveFailsEvenForUnknownTask) {
  seed({runningSince("Running", kTestNow.advanced(-60)), taskAt("Waiting", 1)});

  const TaskSessionError error =
      sessionErrorOf([&] { (void)engine_->start(Uuid::random(), kTestNow, 0); });
  EXPECT_EQ(error.which(), TaskSessionError::Case::anotherTaskActive);
  EXPECT_EQ(error.description(), "Finish or pause the active task first.");
  EXPECT_EQ(local_.load().revision, 0);
}

TEST_F(TaskSessionEngineTest, StartOfUnknownOrFinishedOrActiveTaskFails) {
  const FocusTask done = taskAt("Done", 0, TaskStatus::completed);
  const FocusTask archived = taskAt("Archived", 1, TaskStatus::archived);
  seed({done, archived});

  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->start(Uuid::random(), kTestNow, 0); }).which(),
            TaskSessionError::Case::taskNotFound);
  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->start(done.id, kTestNow, 0); }).which(),
            TaskSessionError::Case::invalidState);
  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->start(archived.id, kTestNow, 0); }).description(),
            "That action is not available for this task.");

  const FocusTask running = runningSince("Running", kTestNow);
  seed({running});
  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->start(running.id, kTestNow, 0); }).which(),
            TaskSessionError::Case::invalidState);
}

TEST_F(TaskSessionEngineTest, PauseFoldsSegmentIntoFocusTime) {
  FocusTask running = runningSince("Report", kTestNow.advanced(-90));
  running.accumulatedFocusSeconds = 10;
  seed({running});
  (void)engine_->recover(kTestNow);

  (void)engine_->pause(kTestNow, 0);

  const FocusTask paused = stored(running.id);
  EXPECT_EQ(paused.status, TaskStatus::paused);
  EXPECT_EQ(paused.accumulatedFocusSeconds, 100);
  EXPECT_FALSE(paused.activeSegmentStartedAt.has_value());
  EXPECT_EQ(paused.updatedAt, kTestNow);
  EXPECT_FALSE(engine_->activeTaskID().has_value());
  EXPECT_EQ(local_.load().auditEvents.back().action, "task.pause");
}

TEST_F(TaskSessionEngineTest, PauseWithSegmentStartInFutureAddsZero) {
  FocusTask running = runningSince("Report", kTestNow.advanced(300));
  running.accumulatedFocusSeconds = 42;
  seed({running});

  (void)engine_->pause(kTestNow, 0);

  EXPECT_EQ(stored(running.id).accumulatedFocusSeconds, 42);
  EXPECT_EQ(stored(running.id).status, TaskStatus::paused);
}

TEST_F(TaskSessionEngineTest, PauseWithoutSegmentStartFailsButSkipAndCompleteAddNothing) {
  FocusTask running = taskAt("Report", 0, TaskStatus::active);
  running.accumulatedFocusSeconds = 30;
  seed({running});

  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->pause(kTestNow, 0); }).which(),
            TaskSessionError::Case::noActiveTask);
  EXPECT_EQ(local_.load().revision, 0);

  (void)engine_->skip(kTestNow, 0);
  EXPECT_EQ(stored(running.id).status, TaskStatus::pending);
  EXPECT_EQ(stored(running.id).accumulatedFocusSeconds, 30);

  seed({running});
  (void)engine_->complete(kTestNow, 0);
  EXPECT_EQ(stored(running.id).status, TaskStatus::completed);
  EXPECT_EQ(stored(running.id).accumulatedFocusSeconds, 30);
}

TEST_F(TaskSessionEngineTest, ResumeWithNoPausedTaskFails) {
  seed({taskAt("Pending", 0)});
  const TaskSessionError error = sessionErrorOf([&] { (void)engine_->resume(kTestNow, 0); });
  EXPECT_EQ(error.which(), TaskSessionError::Case::noActiveTask);
  EXPECT_EQ(error.description(), "No task is currently active.");
}

TEST_F(TaskSessionEngineTest, ResumeStartsFirstPausedTaskOfStoredList) {
  // The second task sorts first in the queue; the stored order decides all the same.
  const FocusTask first = taskAt("First in list", 5, TaskStatus::paused);
  const FocusTask second = taskAt("First in queue", 0, TaskStatus::paused);
  seed({taskAt("Pending", 0), first, second});

  (void)engine_->resume(kTestNow, 0);

  EXPECT_EQ(stored(first.id).status, TaskStatus::active);
  EXPECT_EQ(stored(second.id).status, TaskStatus::paused);
  EXPECT_EQ(engine_->activeTaskID(), first.id);
}

TEST_F(TaskSessionEngineTest, StartAndResumeAppendTaskStartFromApp) {
  const FocusTask task = taskAt("Report", 0);
  seed({task});

  (void)engine_->start(task.id, kTestNow, 0);
  TaskAuditEvent last = local_.load().auditEvents.back();
  EXPECT_EQ(last.action, "task.start");
  EXPECT_EQ(last.source, MutationSource::app);
  EXPECT_EQ(last.taskID, task.id);
  EXPECT_EQ(last.timestamp, kTestNow);

  (void)engine_->pause(kTestNow.advanced(60), 1);
  (void)engine_->resume(kTestNow.advanced(120), 2);
  const std::vector<TaskAuditEvent> events = local_.load().auditEvents;
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events.back().action, "task.start");
  EXPECT_EQ(events.back().source, MutationSource::app);
  EXPECT_EQ(events.back().taskID, task.id);
}

TEST_F(TaskSessionEngineTest, SkipOfOnlyTaskOfDayLeavesItPendingOnePositionHigher) {
  FocusTask running = runningSince("Only", kTestNow.advanced(-120));
  running.manualPosition = 4;
  seed({running});

  (void)engine_->skip(kTestNow, 0);

  const FocusTask skipped = stored(running.id);
  EXPECT_EQ(skipped.status, TaskStatus::pending);
  EXPECT_EQ(skipped.manualPosition, 5);
  EXPECT_EQ(skipped.skipCount, 1);
  EXPECT_EQ(skipped.lastSkippedAt, kTestNow);
  EXPECT_EQ(skipped.accumulatedFocusSeconds, 120);
  EXPECT_EQ(skipped.startedAt, running.startedAt);
  EXPECT_FALSE(skipped.activeSegmentStartedAt.has_value());
  EXPECT_EQ(local_.load().auditEvents.back().action, "task.skip");
}

TEST_F(TaskSessionEngineTest, SkipSendsTaskBehindEveryOtherOpenTaskOfItsDay) {
  FocusTask running = runningSince("Running", kTestNow.advanced(-60));
  const FocusTask later = taskAt("Later", 9);
  const FocusTask done = taskAt("Done", 30, TaskStatus::completed);
  seed({running, taskAt("Next", 1), later, done});

  (void)engine_->skip(kTestNow, 0);

  EXPECT_EQ(stored(running.id).manualPosition, 10);
  EXPECT_FALSE(engine_->nextTaskID().has_value());
}

TEST_F(TaskSessionEngineTest, CompleteRecordsFocusTimeAndSuggestsNextTaskOfItsDay) {
  const FocusTask running = runningSince("Running", kTestNow.advanced(-1500));
  const FocusTask next = taskAt("Next", 2);
  FocusTask otherDay = taskAt("Tomorrow", 0);
  otherDay.plannedDay = LocalDay{2026, 11, 22};
  seed({running, otherDay, next});

  (void)engine_->complete(kTestNow, 0);

  const FocusTask completed = stored(running.id);
  EXPECT_EQ(completed.status, TaskStatus::completed);
  EXPECT_EQ(completed.completedAt, kTestNow);
  EXPECT_EQ(completed.accumulatedFocusSeconds, 1500);
  EXPECT_FALSE(completed.activeSegmentStartedAt.has_value());
  EXPECT_FALSE(engine_->activeTaskID().has_value());
  EXPECT_EQ(engine_->nextTaskID(), next.id);
  EXPECT_EQ(stored(next.id).status, TaskStatus::pending);
  EXPECT_EQ(local_.load().auditEvents.back().action, "task.complete");
}

TEST_F(TaskSessionEngineTest, CompletingUnplannedTaskAtNineSuggestsFromTodaysQueue) {
  // At 09:00 in Auckland it is still the previous day in UTC; today is the calendar's day.
  const Calendar auckland("Pacific/Auckland", Calendar::kMonday);
  const Instant nine = Instant::fromIso8601("2026-11-22T09:00:00+13:00").value();
  FocusTask running = runningSince("Unplanned", nine.advanced(-600));
  running.plannedDay.reset();
  FocusTask today = taskAt("Today", 0);
  today.plannedDay = LocalDay{2026, 11, 22};
  FocusTask utcDay = taskAt("UTC day", 0);
  utcDay.plannedDay = LocalDay{2026, 11, 21};
  seed({running, utcDay, today}, auckland);

  (void)engine_->complete(nine, 0);

  EXPECT_EQ(engine_->nextTaskID(), today.id);
}

TEST_F(TaskSessionEngineTest, CompletingLastOpenTaskLeavesNoNextTaskDespiteLaterScheduledOne) {
  FocusTask scheduledLater = taskAt("This afternoon", 1);
  scheduledLater.scheduledStart = kTestNow.advanced(5 * 3600);
  const FocusTask last = runningSince("Last", kTestNow.advanced(-60));
  seed({last, scheduledLater, taskAt("Done", 2, TaskStatus::completed)});

  (void)engine_->complete(kTestNow, 0);

  EXPECT_FALSE(engine_->nextTaskID().has_value());
  EXPECT_EQ(stored(last.id).status, TaskStatus::completed);
  EXPECT_EQ(stored(scheduledLater.id).status, TaskStatus::pending);
}

TEST_F(TaskSessionEngineTest, CancelStartOfTaskThatIsNotActiveFails) {
  const FocusTask pending = taskAt("Pending", 0);
  seed({pending});
  const TaskSessionError error =
      sessionErrorOf([&] { (void)engine_->cancelStart(pending.id, kTestNow, 0); });
  EXPECT_EQ(error.which(), TaskSessionError::Case::taskNotFound);
  EXPECT_EQ(error.description(), "The task no longer exists.");
  EXPECT_EQ(local_.load().revision, 0);
}

TEST_F(TaskSessionEngineTest, CancelStartDropsSegmentAndFirstStartButKeepsEarlierFocusTime) {
  FocusTask paused = taskAt("Report", 0, TaskStatus::paused);
  paused.startedAt = kTestNow.advanced(-7200);
  paused.accumulatedFocusSeconds = 900;
  seed({paused});
  (void)engine_->start(paused.id, kTestNow, 0);

  (void)engine_->cancelStart(paused.id, kTestNow.advanced(30), 1);

  const FocusTask cancelled = stored(paused.id);
  EXPECT_EQ(cancelled.status, TaskStatus::pending);
  EXPECT_FALSE(cancelled.startedAt.has_value());
  EXPECT_FALSE(cancelled.activeSegmentStartedAt.has_value());
  EXPECT_EQ(cancelled.accumulatedFocusSeconds, 900);
  EXPECT_EQ(cancelled.updatedAt, kTestNow.advanced(30));
  EXPECT_FALSE(engine_->activeTaskID().has_value());
  const std::vector<TaskAuditEvent> events = local_.load().auditEvents;
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].action, "task.start");
  EXPECT_EQ(events[1].action, "task.start.cancel");
}

TEST_F(TaskSessionEngineTest, RecoverWithNoActiveTaskClearsActiveTaskID) {
  const FocusTask task = taskAt("Report", 0);
  seed({task});
  (void)engine_->start(task.id, kTestNow, 0);
  ASSERT_TRUE(engine_->activeTaskID().has_value());

  // Another writer finishes the task behind this engine's back.
  TaskStore other(local_);
  (void)other.transact(
      1, MutationSource::agent, "task.complete", task.id, kTestNow,
      [](PersistedState& state) { state.tasks.front().status = TaskStatus::completed; });

  (void)engine_->recover(kTestNow);
  EXPECT_FALSE(engine_->activeTaskID().has_value());
  EXPECT_FALSE(engine_->lastError().has_value());
  EXPECT_EQ(local_.load().revision, 2);
}

TEST_F(TaskSessionEngineTest, RecoverFindsRunningSegmentAndWritesNothing) {
  const FocusTask withoutSegment = taskAt("No segment", 0, TaskStatus::active);
  const FocusTask running = runningSince("Running", kTestNow.advanced(-86400));
  seed({withoutSegment, running});
  const std::string before = testing::readBytes(local_.url());

  const TaskStoreSnapshot result = engine_->recover(kTestNow);

  EXPECT_EQ(engine_->activeTaskID(), running.id);
  EXPECT_EQ(result.revision(), 0);
  EXPECT_EQ(testing::readBytes(local_.url()), before);
}

TEST_F(TaskSessionEngineTest, ActiveTaskWithoutSegmentStillBlocksOtherStarts) {
  const FocusTask withoutSegment = taskAt("No segment", 0, TaskStatus::active);
  const FocusTask waiting = taskAt("Waiting", 1);
  seed({withoutSegment, waiting});
  (void)engine_->recover(kTestNow);
  EXPECT_FALSE(engine_->activeTaskID().has_value());

  EXPECT_EQ(sessionErrorOf([&] { (void)engine_->start(waiting.id, kTestNow, 0); }).which(),
            TaskSessionError::Case::anotherTaskActive);
}

TEST_F(TaskSessionEngineTest, StaleRevisionWithoutActiveTaskReportsNoActiveTask) {
  seed({taskAt("Pending", 0)});
  for (const auto& operation :
       {&TaskSessionEngine::pause, &TaskSessionEngine::skip, &TaskSessionEngine::complete}) {
    EXPECT_EQ(sessionErrorOf([&] { (void)((*engine_).*operation)(kTestNow, 99); }).which(),
              TaskSessionError::Case::noActiveTask);
  }
}

TEST_F(TaskSessionEngineTest, StaleRevisionFailsWithConflictAndKeepsProperties) {
  const FocusTask task = taskAt("Report", 0);
  const FocusTask other = taskAt("Other", 1);
  seed({task, other});
  (void)engine_->start(task.id, kTestNow, 0);

  EXPECT_THROW((void)engine_->complete(kTestNow, 0), TaskStoreError);
  EXPECT_EQ(engine_->activeTaskID(), task.id);
  EXPECT_EQ(stored(task.id).status, TaskStatus::active);

  // A second start computed from the same revision can't succeed either.
  EXPECT_THROW((void)engine_->start(other.id, kTestNow, 0), TaskStoreError);
  EXPECT_EQ(stored(other.id).status, TaskStatus::pending);
}

TEST_F(TaskSessionEngineTest, CompleteWithClockGoneBackwardsAddsNothing) {
  FocusTask running = runningSince("Report", kTestNow.advanced(60));
  running.accumulatedFocusSeconds = 5;
  seed({running});

  (void)engine_->complete(kTestNow, 0);

  EXPECT_EQ(stored(running.id).accumulatedFocusSeconds, 5);
}

}  // namespace
}  // namespace brindlet

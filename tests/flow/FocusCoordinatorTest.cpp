#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "Builders.h"
#include "SessionFixture.h"
#include "blocking/BlockingError.h"
#include "blocking/SessionError.h"
#include "flow/FocusCoordinator.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"
#include "support/Calendar.h"

namespace brindlet {
namespace {

using testing::errorOf;
using testing::kTestNow;
using testing::makeNewsGroup;
using testing::makeTask;

constexpr double kHalfHour = 30 * 60;
const Instant kEnd = kTestNow.advanced(kHalfHour);
const std::string kCancelled = "Administrator approval was cancelled. No changes were made.";
const std::string kStrictLocked = "Strict sessions cannot be ended before their timer expires.";

// A plan of one task whose blocking group is among the session engine's groups, with the task
// store, both engines and the coordinator over one state file and one temporary hosts file.
class FocusCoordinatorTest : public ::testing::Test {
 protected:
  FocusCoordinatorTest() {
    task_.blockingGroupID = group_.id;
    PersistedState state = PersistedState::initial();
    state.groups = {group_};
    state.tasks = {task_};
    f_.local.save(state);
    f_.engine.loadPersistedState();
  }

  [[nodiscard]] std::int64_t revision() { return store_.snapshot().revision(); }

  [[nodiscard]] FocusTask stored() const {
    for (const FocusTask& task : f_.local.load().tasks) {
      if (task.id == task_.id) return task;
    }
    ADD_FAILURE() << "the task is gone";
    return {};
  }

  [[nodiscard]] std::vector<std::string> auditActions() const {
    std::vector<std::string> actions;
    for (const TaskAuditEvent& event : f_.local.load().auditEvents) actions.push_back(event.action);
    return actions;
  }

  TaskStoreSnapshot startTask(SessionMode mode, Instant now = kTestNow) {
    return coordinator_.start(task_.id, f_.engine.group(group_.id), kHalfHour, mode, now,
                              revision());
  }

  // A session nobody's task asked for, as the blocking screen starts one.
  void startFreeStandingSession(SessionMode mode) {
    f_.engine.start(DomainGroup::socialDistractions(), kHalfHour, mode, kTestNow);
  }

  testing::SessionFixture f_;
  DomainGroup group_ = makeNewsGroup();
  FocusTask task_ = makeTask().titled("Write the report").plannedOn({2026, 11, 21});
  TaskStore store_{f_.local};
  TaskSessionEngine tasks_{store_, Calendar::gregorianUtc()};
  FocusCoordinator coordinator_{tasks_, f_.engine};
};

// ---- start ----

TEST_F(FocusCoordinatorTest, StartWithAGroupStartsTheTaskThenTheSession) {
  const TaskStoreSnapshot result = startTask(SessionMode::flexible);
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_EQ(result.state().tasks.at(0).status, TaskStatus::active);
  // The snapshot is taken after the session was written, so it shows it.
  EXPECT_EQ(result.state().activeSession, f_.engine.activeSession());
  EXPECT_TRUE(f_.blocks(group_));
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

TEST_F(FocusCoordinatorTest, RefusedApprovalOnStartSendsTheTaskBackToPendingWithTheMessage) {
  f_.refuseNextApproval();
  const auto error = errorOf<BlockingError>([&] { startTask(SessionMode::flexible); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), BlockingError::Case::authorizationCancelled);
  const FocusTask task = stored();
  EXPECT_EQ(task.status, TaskStatus::pending);
  EXPECT_FALSE(task.startedAt.has_value());
  EXPECT_FALSE(task.activeSegmentStartedAt.has_value());
  EXPECT_EQ(coordinator_.lastError(), kCancelled);
  EXPECT_EQ(auditActions(), (std::vector<std::string>{"task.start", "task.start.cancel"}));
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_FALSE(f_.storedSession().has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(FocusCoordinatorTest, StartWithNoGroupNeverTouchesBlocking) {
  // A running session would make any start of blocking fail, so this start would fail too if
  // it went near the session engine.
  startFreeStandingSession(SessionMode::strict);
  const std::optional<BlockSession> session = f_.engine.activeSession();
  const std::string hostsBefore = testing::readBytes(f_.hostsPath);
  const std::size_t runnerCallsBefore = f_.runner->calls.size();
  f_.blocker->calls.clear();

  const TaskStoreSnapshot result =
      coordinator_.start(task_.id, std::nullopt, kHalfHour, SessionMode::strict, kTestNow, 0);
  EXPECT_EQ(result.state().tasks.at(0).status, TaskStatus::active);
  EXPECT_EQ(result.revision(), 1);
  EXPECT_FALSE(coordinator_.lastError().has_value());
  EXPECT_EQ(f_.engine.activeSession(), session);
  EXPECT_EQ(f_.storedSession(), session);
  EXPECT_EQ(testing::readBytes(f_.hostsPath), hostsBefore);
  EXPECT_EQ(f_.runner->calls.size(), runnerCallsBefore);
  EXPECT_TRUE(f_.blocker->calls.empty());
}

TEST_F(FocusCoordinatorTest, StartWhileAFreeStandingSessionRunsFailsAndTheTaskIsPendingAgain) {
  startFreeStandingSession(SessionMode::flexible);
  const std::optional<BlockSession> session = f_.engine.activeSession();
  const auto error = errorOf<SessionError>([&] { startTask(SessionMode::flexible); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "A focus session is already active.");
  EXPECT_EQ(stored().status, TaskStatus::pending);
  EXPECT_EQ(coordinator_.lastError(), "A focus session is already active.");
  EXPECT_EQ(f_.engine.activeSession(), session);
  EXPECT_TRUE(f_.blocks(DomainGroup::socialDistractions()));
}

TEST_F(FocusCoordinatorTest, FailedTaskStepRaisesAndLeavesLastErrorAndBlockingAlone) {
  f_.refuseNextApproval();
  EXPECT_THROW(startTask(SessionMode::flexible), BlockingError);
  ASSERT_EQ(coordinator_.lastError(), kCancelled);
  const std::int64_t stale = revision() - 1;

  EXPECT_THROW(
      coordinator_.start(task_.id, group_, kHalfHour, SessionMode::flexible, kTestNow, stale),
      TaskStoreError);
  EXPECT_EQ(coordinator_.lastError(), kCancelled);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_EQ(stored().status, TaskStatus::pending);
}

TEST_F(FocusCoordinatorTest, SuccessfulStartClearsAnEarlierFailure) {
  f_.refuseNextApproval();
  EXPECT_THROW(startTask(SessionMode::flexible), BlockingError);
  startTask(SessionMode::flexible);
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

// ---- pause, skip, complete ----

TEST_F(FocusCoordinatorTest, PauseDuringAStrictSessionFailsAndTheTaskStaysActive) {
  startTask(SessionMode::strict);
  const std::int64_t before = revision();
  const auto error =
      errorOf<SessionError>([&] { coordinator_.pause(kEnd.advanced(-1), revision()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), kStrictLocked);
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_EQ(revision(), before);
  EXPECT_TRUE(f_.blocks(group_));
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

TEST_F(FocusCoordinatorTest, PauseAtTheEndOfAStrictSessionProceedsAndEndsTheSession) {
  startTask(SessionMode::strict);
  const TaskStoreSnapshot result = coordinator_.pause(kEnd, revision());
  EXPECT_EQ(stored().status, TaskStatus::paused);
  EXPECT_EQ(stored().accumulatedFocusSeconds, kHalfHour);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_FALSE(result.state().activeSession.has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(FocusCoordinatorTest, SkipDuringAStrictSessionFailsAndTheTaskStaysActive) {
  startTask(SessionMode::strict);
  const auto error =
      errorOf<SessionError>([&] { coordinator_.skip(kTestNow.advanced(60), revision()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), kStrictLocked);
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_EQ(stored().skipCount, 0);
  EXPECT_TRUE(f_.blocks(group_));
}

TEST_F(FocusCoordinatorTest, SkipAfterTheEndOfAStrictSessionProceedsAndEndsTheSession) {
  startTask(SessionMode::strict);
  coordinator_.skip(kEnd.advanced(30), revision());
  EXPECT_EQ(stored().status, TaskStatus::pending);
  EXPECT_EQ(stored().skipCount, 1);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_FALSE(f_.storedSession().has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(FocusCoordinatorTest, CompleteDuringAStrictSessionSucceedsAndTheSessionRunsOn) {
  startTask(SessionMode::strict);
  const TaskStoreSnapshot result = coordinator_.complete(kTestNow.advanced(600), revision());
  EXPECT_EQ(stored().status, TaskStatus::completed);
  ASSERT_TRUE(f_.engine.activeSession().has_value());
  EXPECT_EQ(result.state().activeSession, f_.engine.activeSession());
  EXPECT_TRUE(f_.blocks(group_));

  f_.engine.tick(kEnd);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(FocusCoordinatorTest, PauseDuringAFlexibleSessionEndsTheSessionToo) {
  startTask(SessionMode::flexible);
  const TaskStoreSnapshot result = coordinator_.pause(kTestNow.advanced(300), revision());
  EXPECT_EQ(stored().status, TaskStatus::paused);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_FALSE(result.state().activeSession.has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(FocusCoordinatorTest, PauseWithNoSessionOnlyPauses) {
  coordinator_.start(task_.id, std::nullopt, kHalfHour, SessionMode::flexible, kTestNow, 0);
  const TaskStoreSnapshot result = coordinator_.pause(kTestNow.advanced(300), revision());
  EXPECT_EQ(result.state().tasks.at(0).status, TaskStatus::paused);
  EXPECT_EQ(result.revision(), 2);
  EXPECT_TRUE(f_.runner->calls.empty());
  EXPECT_TRUE(f_.hostsFileIsPlain());
  EXPECT_EQ(f_.engine.protectionStatus(), ProtectionStatus::off);
}

TEST_F(FocusCoordinatorTest, FailedEndOfSessionAfterPauseLeavesTheTaskPausedAndTheSessionRunning) {
  startTask(SessionMode::flexible);
  f_.refuseNextApproval();
  EXPECT_THROW(coordinator_.pause(kTestNow.advanced(300), revision()), BlockingError);
  EXPECT_EQ(stored().status, TaskStatus::paused);
  EXPECT_TRUE(f_.engine.activeSession().has_value());
  EXPECT_TRUE(f_.blocks(group_));
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

// ---- recover ----

TEST_F(FocusCoordinatorTest, RecoverWithAnActiveBlockingTaskAndNoSessionGivesTheMessage) {
  coordinator_.start(task_.id, std::nullopt, kHalfHour, SessionMode::flexible, kTestNow, 0);
  coordinator_.recover(kTestNow.advanced(60));
  EXPECT_EQ(coordinator_.lastError(),
            "The active task expects website blocking, but protection is not active.");
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_FALSE(f_.engine.activeSession().has_value());
  EXPECT_TRUE(f_.runner->calls.empty());
}

TEST_F(FocusCoordinatorTest, RecoverWithAnActiveTaskWithoutGroupTakesTheBlockingMessage) {
  task_.blockingGroupID.reset();
  PersistedState state = f_.local.load();
  state.tasks = {task_};
  f_.local.save(state);
  coordinator_.start(task_.id, group_, kHalfHour, SessionMode::flexible, kTestNow, 0);
  // The block is gone and can't be put back: the session needs attention.
  testing::writeBytes(f_.hostsPath, testing::kPlainHosts);
  f_.refuseNextApproval();

  coordinator_.recover(kTestNow.advanced(60));
  EXPECT_EQ(f_.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_EQ(coordinator_.lastError(), f_.engine.lastError());
  EXPECT_EQ(coordinator_.lastError(), kCancelled);
}

TEST_F(FocusCoordinatorTest, RecoverWithNoActiveTaskClearsTheMissingProtectionMessage) {
  coordinator_.start(task_.id, std::nullopt, kHalfHour, SessionMode::flexible, kTestNow, 0);
  coordinator_.recover(kTestNow.advanced(60));
  ASSERT_TRUE(coordinator_.lastError().has_value());
  coordinator_.pause(kTestNow.advanced(90), revision());
  coordinator_.recover(kTestNow.advanced(120));
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

TEST_F(FocusCoordinatorTest, RecoverWithTheTaskAndItsSessionRunningHasNoMessage) {
  startTask(SessionMode::strict);
  coordinator_.recover(kTestNow.advanced(60));
  EXPECT_FALSE(coordinator_.lastError().has_value());
  EXPECT_EQ(f_.engine.protectionStatus(), ProtectionStatus::active);
  EXPECT_EQ(tasks_.activeTaskID(), task_.id);
}

// ---- a whole run ----

TEST_F(FocusCoordinatorTest, WholeFocusRunStartsPausesResumesAndCompletesWithItsBlocking) {
  TaskStoreSnapshot current = startTask(SessionMode::flexible);
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_TRUE(f_.storedSession().has_value());
  EXPECT_TRUE(f_.blocks(group_));

  current = coordinator_.pause(kTestNow.advanced(600), current.revision());
  EXPECT_EQ(stored().status, TaskStatus::paused);
  EXPECT_FALSE(f_.storedSession().has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());

  const Instant resumedAt = kTestNow.advanced(900);
  current = coordinator_.start(task_.id, f_.engine.group(group_.id), kHalfHour,
                               SessionMode::flexible, resumedAt, current.revision());
  EXPECT_EQ(stored().status, TaskStatus::active);
  EXPECT_EQ(f_.storedSession()->startedAt, resumedAt);
  EXPECT_TRUE(f_.blocks(group_));

  current = coordinator_.complete(resumedAt.advanced(1200), current.revision());
  const FocusTask done = stored();
  EXPECT_EQ(done.status, TaskStatus::completed);
  EXPECT_EQ(done.accumulatedFocusSeconds, 600 + 1200);
  EXPECT_FALSE(f_.storedSession().has_value());
  EXPECT_TRUE(f_.hostsFileIsPlain());
  EXPECT_EQ(current.revision(), 4);
  EXPECT_EQ(auditActions(),
            (std::vector<std::string>{"task.start", "task.pause", "task.start", "task.complete"}));
  EXPECT_FALSE(coordinator_.lastError().has_value());
}

}  // namespace
}  // namespace brindlet

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <stdexcept>

#include "Builders.h"
#include "TempDir.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"
#include "records/FocusTask.h"
#include "support/BrindletError.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::filesIn;
using testing::kTestNow;
using testing::makeTask;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

class TaskStoreTransactionTest : public ::testing::Test {
 protected:
  TaskStoreTransactionTest() {
    PersistedState state = PersistedState::initial();
    state.tasks = {makeTask().titled("Write the report")};
    local_.save(state);
  }

  // A change that adds one task with the given title.
  static TaskStore::Change addTask(std::string title) {
    return [title = std::move(title)](PersistedState& state) {
      state.tasks.push_back(makeTask().titled(title));
    };
  }

  [[nodiscard]] std::size_t recoveryCopies() const {
    return filesIn(local_.recoveryFolder()).size();
  }

  TempDir dir_;
  fs::path url_ = dir_ / "state.json";
  LocalStore local_{url_};
};

template <typename Body>
TaskStoreError revisionConflictOf(Body&& body) {
  try {
    body();
  } catch (const TaskStoreError& error) {
    return error;
  }
  throw std::logic_error("no revision conflict was raised");
}

TEST_F(TaskStoreTransactionTest, SecondTransactionWithSameRevisionConflicts) {
  TaskStore store(local_);
  const std::int64_t n = store.snapshot().revision();

  const TaskStoreSnapshot first =
      store.transact(n, MutationSource::user, "task.create", std::nullopt, kTestNow, addTask("A"));
  EXPECT_EQ(first.revision(), n + 1);

  const TaskStoreError conflict = revisionConflictOf([&] {
    (void)store.transact(n, MutationSource::user, "task.create", std::nullopt, kTestNow,
                         addTask("B"));
  });
  EXPECT_EQ(conflict.which(), TaskStoreError::Case::revisionConflict);
  EXPECT_EQ(conflict.expected(), n);
  EXPECT_EQ(conflict.actual(), n + 1);
  EXPECT_EQ(conflict.description(),
            "The task list changed. Refresh and try again (expected revision 0, current 1).");
  EXPECT_EQ(local_.load().tasks.size(), 2U);
}

TEST_F(TaskStoreTransactionTest, RevisionAboveCurrentConflicts) {
  TaskStore store(local_);
  const TaskStoreError conflict = revisionConflictOf([&] {
    (void)store.transact(5, MutationSource::agent, "task.update", std::nullopt, kTestNow,
                         addTask("B"));
  });
  EXPECT_EQ(conflict.expected(), 5);
  EXPECT_EQ(conflict.actual(), 0);
  EXPECT_EQ(local_.load().revision, 0);
}

TEST_F(TaskStoreTransactionTest, ThrowingChangeLeavesRevisionAuditTrailFileAndCopiesAsTheyWere) {
  TaskStore store(local_);
  const std::string before = readBytes(url_);
  const std::size_t copiesBefore = recoveryCopies();

  EXPECT_THROW((void)store.transact(0, MutationSource::user, "task.update", std::nullopt, kTestNow,
                                    [](PersistedState& state) {
                                      state.tasks.clear();
                                      throw std::runtime_error("refused");
                                    }),
               std::runtime_error);

  EXPECT_EQ(readBytes(url_), before);
  EXPECT_EQ(recoveryCopies(), copiesBefore);
  const TaskStoreSnapshot after = store.snapshot();
  EXPECT_EQ(after.revision(), 0);
  EXPECT_TRUE(after.state().auditEvents.empty());
  EXPECT_EQ(after.state().tasks.size(), 1U);
}

TEST_F(TaskStoreTransactionTest, ChangeThatBlanksTitleFailsWithItsMessageAndWritesNothing) {
  TaskStore store(local_);
  const std::string before = readBytes(url_);
  try {
    (void)store.transact(0, MutationSource::user, "task.update", std::nullopt, kTestNow,
                         [](PersistedState& state) { state.tasks.front().title = " \n "; });
    FAIL() << "the blank title was committed";
  } catch (const ProductivityValidationError& error) {
    EXPECT_EQ(error.which(), ProductivityValidationError::Case::blankTitle);
    EXPECT_EQ(error.description(), "Enter a task title.");
  }
  EXPECT_EQ(readBytes(url_), before);
  EXPECT_EQ(recoveryCopies(), 0U);
  EXPECT_EQ(store.snapshot().state().tasks.front().title, "Write the report");
}

TEST_F(TaskStoreTransactionTest, SnapshotAfterTransactHasItsRevisionAndOneMoreAuditEvent) {
  TaskStore store(local_);
  const TaskStoreSnapshot before = store.snapshot();
  const Uuid taskID = before.state().tasks.front().id;

  const TaskStoreSnapshot committed = store.transact(
      before.revision(), MutationSource::agent, "task.update", taskID, kTestNow.advanced(5),
      [](PersistedState& state) { state.tasks.front().notes = "Draft first"; });

  const TaskStoreSnapshot after = store.snapshot();
  EXPECT_EQ(after.revision(), committed.revision());
  EXPECT_EQ(after.revision(), before.revision() + 1);
  ASSERT_EQ(after.state().auditEvents.size(), before.state().auditEvents.size() + 1);
  const TaskAuditEvent& event = after.state().auditEvents.back();
  EXPECT_EQ(event.source, MutationSource::agent);
  EXPECT_EQ(event.action, "task.update");
  EXPECT_EQ(event.taskID, taskID);
  EXPECT_EQ(event.timestamp, kTestNow.advanced(5));
  EXPECT_EQ(after.state().tasks.front().notes, "Draft first");
  EXPECT_EQ(local_.load(), committed.state());
}

TEST_F(TaskStoreTransactionTest, ChangeThatAltersNothingStillCommits) {
  TaskStore store(local_);
  const std::string before = readBytes(url_);

  const TaskStoreSnapshot committed = store.transact(
      0, MutationSource::user, "task.update", std::nullopt, kTestNow, [](PersistedState&) {});

  EXPECT_EQ(committed.revision(), 1);
  EXPECT_EQ(committed.state().auditEvents.size(), 1U);
  const std::vector<fs::path> copies = filesIn(local_.recoveryFolder());
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(readBytes(copies.front()), before);
  EXPECT_EQ(local_.load().revision, 1);
}

TEST_F(TaskStoreTransactionTest, RecoveryCopiesKeepEveryReplacedVersion) {
  TaskStore store(local_);
  std::set<std::string> replaced;
  for (int i = 0; i < 3; ++i) {
    replaced.insert(readBytes(url_));
    (void)store.transact(i, MutationSource::user, "task.create", std::nullopt, kTestNow,
                         addTask("Task " + std::to_string(i)));
  }

  std::set<std::string> copies;
  for (const fs::path& copy : filesIn(local_.recoveryFolder())) copies.insert(readBytes(copy));
  EXPECT_EQ(copies, replaced);
  EXPECT_FALSE(copies.contains(readBytes(url_)));
  EXPECT_EQ(local_.load().revision, 3);
}

TEST_F(TaskStoreTransactionTest, SnapshotOfUnreadableFileReturnsLastGoodDocument) {
  TaskStore store(local_);
  const TaskStoreSnapshot good = store.transact(0, MutationSource::user, "task.create",
                                                std::nullopt, kTestNow, addTask("Second"));
  writeBytes(url_, "{ this is not JSON");

  TaskStoreSnapshot fallback = good;
  EXPECT_NO_THROW(fallback = store.snapshot());
  EXPECT_EQ(fallback, good);
  EXPECT_EQ(readBytes(url_), "{ this is not JSON");
}

TEST_F(TaskStoreTransactionTest, SessionEngineWriteBetweenTransactionsDoesNotConflict) {
  TaskStore store(local_);
  const TaskStoreSnapshot first =
      store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow, addTask("A"));

  // The blocking side writes the session outside the revision.
  local_.updateAtomically([](PersistedState& state) {
    state.activeSession = BlockSession{.group = DomainGroup::socialDistractions(),
                                       .mode = SessionMode::strict,
                                       .startedAt = kTestNow,
                                       .endsAt = kTestNow.advanced(1500)};
  });

  const TaskStoreSnapshot second = store.transact(
      first.revision(), MutationSource::user, "task.create", std::nullopt, kTestNow, addTask("B"));
  EXPECT_EQ(second.revision(), 2);
  EXPECT_TRUE(second.state().activeSession.has_value());
  EXPECT_EQ(second.state().auditEvents.size(), 2U);
  EXPECT_EQ(local_.load(), second.state());
}

TEST_F(TaskStoreTransactionTest, CorruptFileWithRecoveryStateFailsWithLoadFailureAndKeepsBytes) {
  const std::string corrupt = "{\"schemaVersion\": 2, \"tasks\": [ {\"title\": ";
  writeBytes(url_, corrupt);
  TaskStore store(local_, PersistedState::initial());
  EXPECT_EQ(store.snapshot().revision(), 0);

  try {
    (void)store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow,
                         addTask("A"));
    FAIL() << "a transaction ran on a corrupt file";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::unreadable);
    EXPECT_THAT(error.description(), ::testing::StartsWith("Brindlet data could not be read: "));
  }
  EXPECT_EQ(readBytes(url_), corrupt);
  EXPECT_EQ(recoveryCopies(), 0U);
  EXPECT_EQ(store.snapshot().state(), PersistedState::initial());
}

TEST_F(TaskStoreTransactionTest, RecoveryEndsOnceTheFileLoadsAgain) {
  writeBytes(url_, "not JSON");
  TaskStore store(local_, PersistedState::initial());
  fs::remove(url_);

  const TaskStoreSnapshot committed =
      store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow, addTask("A"));
  EXPECT_EQ(committed.revision(), 1);
  EXPECT_EQ(local_.load().tasks.size(), 1U);
}

TEST_F(TaskStoreTransactionTest, RefusedTransactionStillBringsTheStoreUpToDate) {
  TaskStore store(local_);
  TaskStore other(local_);
  (void)other.transact(0, MutationSource::agent, "task.create", std::nullopt, kTestNow,
                       addTask("From the agent"));

  EXPECT_THROW((void)store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow,
                                    addTask("Stale")),
               TaskStoreError);

  // The store's memory holds the other writer's document even while the file can't be read.
  writeBytes(url_, "garbage");
  const TaskStoreSnapshot fallback = store.snapshot();
  EXPECT_EQ(fallback.revision(), 1);
  EXPECT_EQ(fallback.state().tasks.back().title, "From the agent");
}

TEST_F(TaskStoreTransactionTest, ChangeBySecondStoreShowsInNextSnapshot) {
  TaskStore store(local_);
  TaskStore other(local_);
  const TaskStoreSnapshot before = store.snapshot();
  EXPECT_EQ(store.snapshot().sharedState(), before.sharedState());

  (void)other.transact(0, MutationSource::agent, "task.create", std::nullopt, kTestNow,
                       addTask("From elsewhere"));

  const TaskStoreSnapshot after = store.snapshot();
  EXPECT_EQ(after.revision(), 1);
  EXPECT_EQ(after.state().tasks.back().title, "From elsewhere");
}

TEST_F(TaskStoreTransactionTest, FailedSaveCommitsNothing) {
  TaskStore store(local_);
  const std::string before = readBytes(url_);
  // A file where the recovery folder belongs keeps the previous version from being made safe.
  writeBytes(local_.recoveryFolder(), "in the way");

  EXPECT_THROW((void)store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow,
                                    addTask("A")),
               SystemError);

  EXPECT_EQ(readBytes(url_), before);
  const TaskStoreSnapshot after = store.snapshot();
  EXPECT_EQ(after.revision(), 0);
  EXPECT_EQ(after.state().tasks.size(), 1U);
}

TEST_F(TaskStoreTransactionTest, LockThatCannotBeTakenFailsWithLockMessage) {
  TaskStore store(local_);
  fs::create_directories(local_.lockPath());
  try {
    (void)store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow,
                         addTask("A"));
    FAIL() << "the transaction ran without the lock";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::lockFailed);
    EXPECT_THAT(error.description(), ::testing::StartsWith("Brindlet data could not be locked: "));
  }
  EXPECT_EQ(local_.load().revision, 0);
}

}  // namespace
}  // namespace brindlet

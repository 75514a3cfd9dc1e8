#include <gtest/gtest.h>

#include "Builders.h"
#include "ChildProcess.h"
#include "TempDir.h"
#include "persistence/TaskStore.h"

namespace brindlet {
namespace {

using testing::makeTask;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

class TaskStoreTest : public ::testing::Test {
 protected:
  TempDir dir;
  LocalStore local{dir / "state.json"};

  PersistedState savedWithTask(std::string title, std::int64_t revision) {
    PersistedState state = PersistedState::initial();
    state.tasks = {makeTask().titled(std::move(title))};
    state.revision = revision;
    local.save(state);
    return state;
  }
};

TEST_F(TaskStoreTest, ConstructionReadsTheDocument) {
  const PersistedState state = savedWithTask("Read", 4);
  TaskStore store(local);
  const TaskStoreSnapshot snapshot = store.snapshot();
  EXPECT_EQ(snapshot.revision(), 4);
  EXPECT_EQ(snapshot.state(), state);
}

TEST_F(TaskStoreTest, ConstructionFailsWhenTheFileCannotBeLoaded) {
  writeBytes(local.url(), "{");
  EXPECT_THROW(TaskStore{local}, LocalStoreError);
}

TEST_F(TaskStoreTest, RecoveryConstructionKeepsTheGivenDocumentAndDoesNotTouchTheFile) {
  writeBytes(local.url(), "{ corrupt");
  TaskStore store(local, PersistedState::initial());
  EXPECT_EQ(store.snapshot().state(), PersistedState::initial());
  EXPECT_EQ(store.snapshot().revision(), 0);
  EXPECT_EQ(readBytes(local.url()), "{ corrupt");
  EXPECT_FALSE(std::filesystem::exists(local.recoveryFolder()));
}

TEST_F(TaskStoreTest, RecoveryEndsByItselfOnceTheFileLoads) {
  writeBytes(local.url(), "{ corrupt");
  TaskStore store(local, PersistedState::initial());
  std::filesystem::remove(local.url());
  const PersistedState state = savedWithTask("Restored", 5);
  EXPECT_EQ(store.snapshot().state(), state);
}

TEST_F(TaskStoreTest, SnapshotShowsAChangeMadeByAnotherWriter) {
  savedWithTask("First", 1);
  TaskStore store(local);
  (void)store.snapshot();
  local.updateAtomically([](PersistedState& state) { state.tasks[0].title = "Changed"; });
  EXPECT_EQ(store.snapshot().state().tasks[0].title, "Changed");
}

TEST_F(TaskStoreTest, SnapshotShowsAChangeMadeByAnotherProcess) {
  savedWithTask("First", 1);
  TaskStore store(local);
  EXPECT_EQ(store.snapshot().revision(), 1);
  const pid_t child = testing::runInChild([&] {
    local.updateAtomically([](PersistedState& state) { state.revision = 2; });
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), 0);
  EXPECT_EQ(store.snapshot().revision(), 2);
}

TEST_F(TaskStoreTest, SnapshotOfAnUnreadableFileReturnsTheLastGoodDocument) {
  const PersistedState good = savedWithTask("Good", 3);
  TaskStore store(local);
  writeBytes(local.url(), R"({"schemaVersion": 2, "tasks": [{"title": ""}]})");
  const TaskStoreSnapshot snapshot = store.snapshot();
  EXPECT_EQ(snapshot.state(), good);
  EXPECT_EQ(readBytes(local.url()), R"({"schemaVersion": 2, "tasks": [{"title": ""}]})");
}

TEST_F(TaskStoreTest, SnapshotOfAnUnchangedFileSharesTheDocument) {
  savedWithTask("Same", 1);
  TaskStore store(local);
  const TaskStoreSnapshot first = store.snapshot();
  const TaskStoreSnapshot second = store.snapshot();
  EXPECT_EQ(first.sharedState(), second.sharedState());
  local.save(local.load());
  const TaskStoreSnapshot third = store.snapshot();
  EXPECT_NE(third.sharedState(), first.sharedState());
  EXPECT_EQ(third, first);
}

TEST_F(TaskStoreTest, SnapshotWithNoFileIsTheInitialDocument) {
  TaskStore store(local);
  EXPECT_EQ(store.snapshot().state(), PersistedState::initial());
  EXPECT_FALSE(std::filesystem::exists(local.url()));
}

TEST_F(TaskStoreTest, SnapshotsCompareByRevisionAndDocument) {
  PersistedState state = PersistedState::initial();
  const TaskStoreSnapshot a(state);
  const TaskStoreSnapshot b(state);
  EXPECT_EQ(a, b);
  state.revision = 1;
  EXPECT_NE(a, TaskStoreSnapshot(state));
  EXPECT_EQ(TaskStoreSnapshot(state).revision(), 1);
}

}  // namespace
}  // namespace brindlet

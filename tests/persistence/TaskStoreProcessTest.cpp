#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "Builders.h"
#include "TempDir.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::filesIn;
using testing::kTestNow;
using testing::makeTask;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

// A forked copy of the test process running `body`; its exit status is 0 when `body` returned
// and 1 when it threw. Waited for, or killed and waited for, when the object goes away.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<void()>& body) : pid_(::fork()) {
    if (pid_ < 0) throw std::runtime_error("fork failed");
    if (pid_ == 0) {
      int status = 0;
      try {
        body();
      } catch (...) {
        status = 1;
      }
      // Skip the parent's exit handlers: the temporary folder belongs to the parent.
      ::_exit(status);
    }
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() {
    if (pid_ > 0) {
      ::kill(pid_, SIGKILL);
      (void)wait();
    }
  }

  void kill() const { ::kill(pid_, SIGKILL); }

  /// The raw wait status.
  int wait() {
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    return status;
  }

  [[nodiscard]] bool exitedCleanly() {
    const int status = wait();
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  pid_t pid_;
};

// Both ends of a pipe, closed when the object goes away.
class Pipe {
 public:
  Pipe() {
    if (::pipe(ends_) != 0) throw std::runtime_error("pipe failed");
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    closeReadEnd();
    closeWriteEnd();
  }
  [[nodiscard]] int readEnd() const { return ends_[0]; }
  [[nodiscard]] int writeEnd() const { return ends_[1]; }
  void closeReadEnd() { closeEnd(0); }
  void closeWriteEnd() { closeEnd(1); }

  /// Every byte written until all write ends were closed.
  std::string drain() const {
    std::string bytes;
    char buffer[256];
    for (;;) {
      const ssize_t count = ::read(ends_[0], buffer, sizeof buffer);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
  }

 private:
  void closeEnd(int which) {
    if (ends_[which] >= 0) ::close(ends_[which]);
    ends_[which] = -1;
  }
  int ends_[2] = {-1, -1};
};

// Commits one task titled `title`, computing it from a fresh snapshot and retrying for as long
// as another writer got there first.
void commitWithRetry(TaskStore& store, const std::string& title) {
  for (;;) {
    const std::int64_t revision = store.snapshot().revision();
    try {
      (void)store.transact(
          revision, MutationSource::app, "task.create", std::nullopt, kTestNow,
          [&](PersistedState& state) { state.tasks.push_back(makeTask().titled(title)); });
      return;
    } catch (const TaskStoreError&) {
    }
  }
}

class TaskStoreProcessTest : public ::testing::Test {
 protected:
  TempDir dir_;
  fs::path url_ = dir_ / "state.json";
  LocalStore local_{url_};
};

TEST_F(TaskStoreProcessTest, TwoProcessesCommittingConcurrentlyLoseNoChange) {
  constexpr int kPerProcess = 300;
  // The very first save makes no recovery copy; start from a file so that every commit does.
  local_.save(PersistedState::initial());

  const auto writer = [&](const std::string& name) {
    return [&, name] {
      TaskStore store(local_);
      for (int i = 0; i < kPerProcess; ++i) commitWithRetry(store, name + " " + std::to_string(i));
    };
  };
  ChildProcess first(writer("first"));
  ChildProcess second(writer("second"));
  EXPECT_TRUE(first.exitedCleanly());
  EXPECT_TRUE(second.exitedCleanly());

  const PersistedState state = local_.load();
  EXPECT_EQ(state.revision, 2 * kPerProcess);
  EXPECT_EQ(state.auditEvents.size(), 2U * kPerProcess);
  EXPECT_EQ(filesIn(local_.recoveryFolder()).size(), 2U * kPerProcess);
  std::set<std::string> titles;
  for (const FocusTask& task : state.tasks) titles.insert(task.title);
  EXPECT_EQ(titles.size(), 2U * kPerProcess);
  for (int i = 0; i < kPerProcess; ++i) {
    EXPECT_TRUE(titles.contains("first " + std::to_string(i))) << i;
    EXPECT_TRUE(titles.contains("second " + std::to_string(i))) << i;
  }
}

TEST_F(TaskStoreProcessTest, ProcessKilledDuringTransactionsLeavesLoadableFileAtReportedRevision) {
  constexpr int kKills = 200;
  PersistedState seed = PersistedState::initial();
  for (int i = 0; i < 40; ++i) seed.tasks.push_back(makeTask().titled("Seed " + std::to_string(i)));
  local_.save(seed);

  std::mt19937 random(20261121);
  std::uniform_int_distribution<int> delayMicroseconds(0, 40000);
  std::int64_t totalReported = 0;
  int killedAfterCommitBeforeReport = 0;
  for (int round = 0; round < kKills; ++round) {
    const std::int64_t before = local_.load().revision;
    Pipe reports;
    ChildProcess child([&] {
      reports.closeReadEnd();
      TaskStore store(local_);
      for (;;) {
        commitWithRetry(store, "Round " + std::to_string(round));
        // One byte per commit that transact reported done.
        if (::write(reports.writeEnd(), "c", 1) != 1) return;
      }
    });
    reports.closeWriteEnd();
    // Every other round lets the child commit once first, so that however slow the machine,
    // half the kills land among transactions rather than during the start of the process.
    std::int64_t reported = 0;
    char first = 0;
    if (round % 2 == 1 && ::read(reports.readEnd(), &first, 1) == 1) ++reported;
    std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds(random)));
    child.kill();
    (void)child.wait();
    reported += static_cast<std::int64_t>(reports.drain().size());

    PersistedState after;
    ASSERT_NO_THROW(after = local_.load()) << "round " << round;
    const std::int64_t committed = after.revision - before;
    ASSERT_TRUE(committed == reported || committed == reported + 1)
        << "round " << round << ": " << reported << " reported, " << committed << " in the file";
    ASSERT_EQ(after.auditEvents.size(), static_cast<std::size_t>(after.revision));
    totalReported += reported;
    if (committed == reported + 1) ++killedAfterCommitBeforeReport;
  }
  EXPECT_GE(totalReported, kKills / 2);
  RecordProperty("commitsReported", static_cast<int>(totalReported));
  RecordProperty("killedAfterCommitBeforeReport", killedAfterCommitBeforeReport);
}

TEST_F(TaskStoreProcessTest, ChangeBySecondProcessShowsInNextSnapshot) {
  local_.save(PersistedState::initial());
  TaskStore store(local_);
  EXPECT_EQ(store.snapshot().revision(), 0);

  ChildProcess child([&] {
    TaskStore other(local_);
    commitWithRetry(other, "From the other process");
  });
  ASSERT_TRUE(child.exitedCleanly());

  const TaskStoreSnapshot after = store.snapshot();
  EXPECT_EQ(after.revision(), 1);
  ASSERT_EQ(after.state().tasks.size(), 1U);
  EXPECT_EQ(after.state().tasks.front().title, "From the other process");
}

TEST_F(TaskStoreProcessTest, FileCorruptedBySecondProcessGivesLastGoodDocumentAndKeepsBytes) {
  TaskStore store(local_);
  const TaskStoreSnapshot good =
      store.transact(0, MutationSource::user, "task.create", std::nullopt, kTestNow,
                     [](PersistedState& state) { state.tasks.push_back(makeTask()); });
  const std::string corrupt = "{\"schemaVersion\": 2, \"tasks\": [ {";

  ChildProcess child([&] { writeBytes(url_, corrupt); });
  ASSERT_TRUE(child.exitedCleanly());

  for (int i = 0; i < 3; ++i) EXPECT_EQ(store.snapshot(), good);
  EXPECT_EQ(readBytes(url_), corrupt);
}

}  // namespace
}  // namespace brindlet

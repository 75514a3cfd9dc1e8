// A real full disk: a small tmpfs, mounted in a mount namespace of a child process so that
// nothing outlives the test, fills up while plans are being saved.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>

#include "Builders.h"
#include "ChildProcess.h"
#include "TempDir.h"
#include "persistence/TaskStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

constexpr int kCannotMount = 77;

// The checks run in the child, which has the small disk; it reports the first broken promise.
std::string fillTheDisk(const fs::path& mountPoint) {
  const LocalStore store(mountPoint / "Brindlet" / "state.json");
  TaskStore tasks(store);
  PersistedState lastSaved = store.load();
  int refused = 0;
  for (int round = 0; round < 2000 && refused < 5; ++round) {
    const std::int64_t revision = tasks.snapshot().revision();
    try {
      const TaskStoreSnapshot committed = tasks.transact(
          revision, MutationSource::user, "task.create", std::nullopt, testing::kTestNow,
          [](PersistedState& state) {
            state.tasks.push_back(testing::makeTask().titled("Fill").withEveryField());
          });
      lastSaved = committed.state();
    } catch (const BrindletError& error) {
      ++refused;
      if (error.description().find("No space left on device") == std::string::npos) {
        return "refused without the system's words: " + error.description();
      }
    }
    if (store.load() != lastSaved) return "the saved plan changed after a refused write";
    if (tasks.snapshot().state() != lastSaved) return "the snapshot lost the saved plan";
  }
  if (refused == 0) return "the disk never filled up";
  for (const auto& entry : fs::directory_iterator(store.recoveryFolder())) {
    try {
      (void)LocalStore(entry.path()).load();
    } catch (const BrindletError& error) {
      return "damaged recovery copy " + entry.path().string() + ": " + error.description();
    }
  }
  return {};
}

TEST(FullDiskTest, FullDiskRefusesEveryWriteWithTheSystemsWordsAndKeepsWhatWasSaved) {
  const testing::TempDir dir;
  int report[2];
  ASSERT_EQ(::pipe(report), 0);
  const pid_t child = testing::runInChild([&] {
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", dir.path().c_str(), "tmpfs", 0, "size=384k,mode=0700") != 0) {
      return kCannotMount;
    }
    const std::string problem = fillTheDisk(dir.path());
    (void)::write(report[1], problem.data(), problem.size());
    return problem.empty() ? 0 : 1;
  });
  ::close(report[1]);
  std::string problem;
  char buffer[512];
  for (ssize_t n; (n = ::read(report[0], buffer, sizeof buffer)) > 0;) problem.append(buffer, n);
  ::close(report[0]);
  const int status = testing::waitForExit(child);
  if (status == kCannotMount) GTEST_SKIP() << "needs root to mount a small file system";
  EXPECT_EQ(problem, "");
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace brindlet

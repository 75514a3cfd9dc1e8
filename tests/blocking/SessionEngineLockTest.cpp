#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <exception>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Builders.h"
#include "SessionFixture.h"
#include "blocking/SessionEngine.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeNewsGroup;
using testing::SessionFixture;

bool kernelListsLocks() { return std::ifstream("/proc/locks").good(); }

// Whether some thread waits for an flock on the file with this inode, as the kernel lists it.
bool someoneWaitsForLock(ino_t inode) {
  std::ifstream locks("/proc/locks");
  const std::string needle = ":" + std::to_string(inode) + " ";
  for (std::string line; std::getline(locks, line);) {
    if (line.find("->") != std::string::npos && line.find("FLOCK") != std::string::npos &&
        line.find(needle) != std::string::npos) {
      return true;
    }
  }
  return false;
}

// Runs `write` on another thread while this one holds the state file's lock, and changes the
// file itself once the other thread is seen waiting for the lock. The write must then be built
// on the file as changed here: it read the file only after taking the lock.
template <typename Write>
PersistedState writeWhileLockIsHeld(SessionFixture& f, Write&& write) {
  f.local.save(f.local.load());
  std::thread writer;
  f.local.withExclusiveLock([&] {
    struct stat info {};
    EXPECT_EQ(::stat(f.local.lockPath().c_str(), &info), 0);
    writer = std::thread([&] {
      try {
        write();
      } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
      }
    });
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!someoneWaitsForLock(info.st_ino) && std::chrono::steady_clock::now() < giveUp) {
      std::this_thread::yield();
    }
    EXPECT_TRUE(someoneWaitsForLock(info.st_ino));
    PersistedState changed = f.local.load();
    changed.revision = 7;
    f.local.save(changed);
  });
  writer.join();
  return f.local.load();
}

TEST(SessionEngineLockTest, StartWaitsForTheStateFileLockAndReadsTheFileAfterIt) {
  if (!kernelListsLocks()) GTEST_SKIP() << "the kernel doesn't list its locks here";
  SessionFixture f;
  const PersistedState after = writeWhileLockIsHeld(
      f, [&] { f.engine.start(makeNewsGroup(), 1800, SessionMode::flexible, kTestNow); });
  EXPECT_EQ(after.revision, 7);
  EXPECT_EQ(after.activeSession, f.engine.activeSession());
}

TEST(SessionEngineLockTest, ReplaceGroupsWaitsForTheStateFileLockAndReadsTheFileAfterIt) {
  if (!kernelListsLocks()) GTEST_SKIP() << "the kernel doesn't list its locks here";
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const PersistedState after = writeWhileLockIsHeld(f, [&] { f.engine.replaceGroups({group}); });
  EXPECT_EQ(after.revision, 7);
  EXPECT_EQ(after.groups, std::vector<DomainGroup>{group});
}

TEST(SessionEngineLockTest, EndingWaitsForTheStateFileLockAndReadsTheFileAfterIt) {
  if (!kernelListsLocks()) GTEST_SKIP() << "the kernel doesn't list its locks here";
  SessionFixture f;
  f.engine.start(makeNewsGroup(), 1800, SessionMode::flexible, kTestNow);
  const PersistedState after =
      writeWhileLockIsHeld(f, [&] { f.engine.endFlexible(kTestNow.advanced(60)); });
  EXPECT_EQ(after.revision, 7);
  EXPECT_FALSE(after.activeSession.has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
}

}  // namespace
}  // namespace brindlet

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "Builders.h"
#include "ChildProcess.h"
#include "TempDir.h"
#include "persistence/LocalStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::filesIn;
using testing::runInChild;
using testing::TempDir;
using testing::waitForExit;

TEST(LocalStoreProcessTest, TwoProcessesIncrementingTwoHundredTimesEachReachFourHundred) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  const auto increment200 = [&] {
    for (int i = 0; i < 200; ++i) {
      store.updateAtomically([](PersistedState& state) { state.revision += 1; });
    }
    return 0;
  };
  const pid_t first = runInChild(increment200);
  const pid_t second = runInChild(increment200);
  EXPECT_EQ(waitForExit(first), 0);
  EXPECT_EQ(waitForExit(second), 0);

  EXPECT_EQ(store.load().revision, 400);
  const auto copies = filesIn(store.recoveryFolder());
  EXPECT_EQ(copies.size(), 399U);  // the very first save had nothing to copy
  for (const auto& copy : copies) {
    EXPECT_NO_THROW((void)LocalStore(copy).load()) << copy;
  }
}

TEST(LocalStoreProcessTest, LockHeldByAnotherProcessMakesTheBodyWait) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = runInChild([&] {
    return store.withExclusiveLock([&] {
      const char signal = 'x';
      (void)::write(ready[1], &signal, 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      testing::writeBytes(dir / "released", "");
      return 0;
    });
  });
  char signal = 0;
  ASSERT_EQ(::read(ready[0], &signal, 1), 1);
  const bool sawRelease = store.withExclusiveLock([&] { return fs::exists(dir / "released"); });
  EXPECT_TRUE(sawRelease);
  EXPECT_EQ(waitForExit(holder), 0);
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST(LocalStoreProcessTest, ReaderNeverSeesAPartlyWrittenFile) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  PersistedState big = testing::makeFullState();
  for (int i = 0; i < 300; ++i) big.tasks.push_back(testing::makeTask().withEveryField());
  store.save(big);
  const pid_t writer = runInChild([&] {
    PersistedState state = big;
    for (int i = 0; i < 60; ++i) {
      state.revision = i;
      store.save(state);
    }
    return 0;
  });
  int loads = 0;
  for (; loads < 300; ++loads) ASSERT_EQ(store.load().tasks.size(), big.tasks.size());
  EXPECT_EQ(waitForExit(writer), 0);
}

}  // namespace
}  // namespace brindlet

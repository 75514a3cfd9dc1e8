#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Builders.h"
#include "ChildProcess.h"
#include "SessionFixture.h"
#include "blocking/SessionEngine.h"

// The program dies for real here: a child process runs the engine and is ended by its runner
// in the middle of a change, then the parent starts again over the same files.

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::kTestNow;
using testing::makeNewsGroup;
using testing::SessionFixture;

constexpr double kHalfHour = 30 * 60;
constexpr int kDiedInRunner = 42;
const Instant kEnd = kTestNow.advanced(kHalfHour);

// A runner outcome that ends the process before the hosts file is replaced.
void dieBeforeCopying(const fs::path& /*source*/, const fs::path& /*destination*/) {
  ::_exit(kDiedInRunner);
}

// A runner outcome that ends the process right after the hosts file was replaced.
void dieAfterCopying(const fs::path& source, const fs::path& destination) {
  copyFileAtomically(source, destination);
  ::_exit(kDiedInRunner);
}

TEST(SessionEngineCrashTest, CrashBetweenStoringTheSessionAndBlockingIsRepairedByRecover) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const pid_t child = testing::runInChild([&] {
    f.runner->thenReplace(dieBeforeCopying);
    f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), kDiedInRunner);
  ASSERT_TRUE(f.storedSession().has_value());
  ASSERT_TRUE(f.hostsFileIsPlain());

  f.engine.recover(kTestNow.advanced(5));
  EXPECT_EQ(f.blocker->calls, (std::vector<std::string>{"status", "apply"}));
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(f.runner->calls.size(), 1U);
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  ASSERT_TRUE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.activeSession()->group, group);
  EXPECT_EQ(f.engine.activeSession()->mode, SessionMode::strict);
  EXPECT_EQ(f.engine.activeSession()->state, SessionState::active);
  EXPECT_EQ(f.storedSession(), f.engine.activeSession());
  EXPECT_EQ(f.changes, std::vector<std::optional<BlockSession>>{f.engine.activeSession()});
}

TEST(SessionEngineCrashTest, BlockInTheHostsFileWithoutAStoredSessionIsNotClaimed) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const pid_t child = testing::runInChild([&] {
    f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), 0);
  // The state file lost its session, as when an older copy of it was put back.
  f.local.updateAtomically([](PersistedState& state) { state.activeSession.reset(); });
  ASSERT_TRUE(f.blocks(group));

  f.engine.recover(kTestNow.advanced(5));
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_FALSE(f.engine.lastError().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.blocker->calls.empty());
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_TRUE(f.blocks(group));
  EXPECT_TRUE(f.changes.empty());

  // The next session takes the managed block over as its own.
  f.engine.start(DomainGroup::socialDistractions(), kHalfHour, SessionMode::flexible,
                 kTestNow.advanced(10));
  EXPECT_TRUE(f.blocks(DomainGroup::socialDistractions()));
  f.engine.endFlexible(kTestNow.advanced(20));
  EXPECT_TRUE(f.hostsFileIsPlain());
}

TEST(SessionEngineCrashTest, SessionThatExpiredWhileTheProgramWasDownIsEndedAtRecover) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const pid_t child = testing::runInChild([&] {
    f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), 0);
  ASSERT_TRUE(f.blocks(group));

  f.engine.recover(kEnd.advanced(8 * 3600));
  EXPECT_EQ(f.blocker->calls, std::vector<std::string>{"remove"});
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_EQ(f.changes, std::vector<std::optional<BlockSession>>{std::nullopt});
}

TEST(SessionEngineCrashTest, CrashBetweenRemovingTheBlockAndClearingTheSessionIsEndedAtRecover) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const pid_t child = testing::runInChild([&] {
    f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
    f.runner->thenReplace(dieAfterCopying);
    f.engine.tick(kEnd);
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), kDiedInRunner);
  ASSERT_TRUE(f.hostsFileIsPlain());
  ASSERT_TRUE(f.storedSession().has_value());

  f.engine.recover(kEnd.advanced(60));
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  // Nothing was left to take out, so no approval was asked for.
  EXPECT_TRUE(f.runner->calls.empty());
}

TEST(SessionEngineCrashTest, RunningSessionIsFoundAgainAfterARestart) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  const pid_t child = testing::runInChild([&] {
    f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
    return 0;
  });
  ASSERT_EQ(testing::waitForExit(child), 0);
  const std::optional<BlockSession> stored = f.storedSession();

  f.engine.recover(kTestNow.advanced(600));
  EXPECT_EQ(f.engine.activeSession(), stored);
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  EXPECT_EQ(f.engine.remainingTime(kTestNow.advanced(600)), kHalfHour - 600);
  EXPECT_TRUE(f.runner->calls.empty());
}

}  // namespace
}  // namespace brindlet

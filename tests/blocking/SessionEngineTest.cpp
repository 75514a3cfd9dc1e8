#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Builders.h"
#include "SessionFixture.h"
#include "blocking/BlockingError.h"
#include "blocking/DomainRules.h"
#include "blocking/SessionEngine.h"
#include "blocking/SessionError.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::errorOf;
using testing::FakePrivilegedRunner;
using testing::kTestNow;
using testing::makeNewsGroup;
using testing::SessionFixture;

constexpr double kHalfHour = 30 * 60;
const Instant kEnd = kTestNow.advanced(kHalfHour);
const std::string kCancelled = "Administrator approval was cancelled. No changes were made.";

// ---- start ----

TEST(SessionEngineTest, StartStoresSessionBlocksHostsAndReportsActive) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);

  ASSERT_TRUE(f.engine.activeSession().has_value());
  const BlockSession& session = *f.engine.activeSession();
  EXPECT_EQ(session.group, group);
  EXPECT_EQ(session.mode, SessionMode::flexible);
  EXPECT_EQ(session.startedAt, kTestNow);
  EXPECT_EQ(session.endsAt, kEnd);
  EXPECT_EQ(session.state, SessionState::active);
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  EXPECT_FALSE(f.engine.lastError().has_value());
  EXPECT_EQ(f.storedSession(), session);
  EXPECT_TRUE(f.blocks(group));
  ASSERT_EQ(f.changes.size(), 1U);
  EXPECT_EQ(f.changes[0], session);
}

TEST(SessionEngineTest, StartWritesTheSessionBeforeTheHostsFile) {
  SessionFixture f;
  std::optional<BlockSession> storedWhenHostsChanged;
  f.runner->thenReplace([&](const fs::path& source, const fs::path& destination) {
    storedWhenHostsChanged = f.storedSession();
    copyFileAtomically(source, destination);
  });
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  EXPECT_EQ(storedWhenHostsChanged, f.engine.activeSession());
}

TEST(SessionEngineTest, StartStoresTheEngineGroupsWithTheSession) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.local.updateAtomically([](PersistedState& state) { state.groups.clear(); });
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  EXPECT_EQ(f.local.load().groups, std::vector<DomainGroup>{group});
}

TEST(SessionEngineTest, DurationBelowOneMinuteFailsAndOneMinutePasses) {
  SessionFixture f;
  const auto error = errorOf<SessionError>(
      [&] { f.engine.start(makeNewsGroup(), 59.9, SessionMode::flexible, kTestNow); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), SessionError::Case::invalidDuration);
  EXPECT_EQ(error->description(), "Choose a duration of at least one minute.");
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.runner->calls.empty());

  f.engine.start(makeNewsGroup(), 60, SessionMode::flexible, kTestNow);
  ASSERT_TRUE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.activeSession()->endsAt, kTestNow.advanced(60));
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
}

TEST(SessionEngineTest, GroupWithOnlyDisabledRulesFailsWithEnableAtLeastOneDomain) {
  SessionFixture f;
  DomainGroup group = makeNewsGroup();
  for (DomainRule& rule : group.rules) rule.isEnabled = false;
  const auto error = errorOf<SessionError>(
      [&] { f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "Enable at least one domain before starting.");
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
}

TEST(SessionEngineTest, DisabledGroupStillBlocksItsEnabledRules) {
  SessionFixture f;
  DomainGroup group = makeNewsGroup();
  group.isEnabled = false;
  group.rules[1].isEnabled = false;
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  EXPECT_EQ(f.hosts->status(DomainRules::expandedHosts({"example.com"})), BlockingStatus::active);
}

TEST(SessionEngineTest, GroupWhoseStoredDomainNoLongerValidatesFailsWithTheRuleMessage) {
  SessionFixture f;
  DomainGroup group = makeNewsGroup();
  group.rules[1].domain = "192.168.1.1";
  const auto error = errorOf<DomainRuleError>(
      [&] { f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(),
            DomainRuleError(DomainRuleError::Case::ipAddressNotAllowed).description());
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.runner->calls.empty());
}

TEST(SessionEngineTest, StartWithSessionOnDiskButNotInMemoryFailsAlreadyActive) {
  SessionFixture f;
  auto other = f.restartedEngine();
  other->start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  const std::optional<BlockSession> onDisk = f.storedSession();
  ASSERT_FALSE(f.engine.activeSession().has_value());

  const auto error = errorOf<SessionError>([&] {
    f.engine.start(DomainGroup::socialDistractions(), kHalfHour, SessionMode::strict, kTestNow);
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), SessionError::Case::alreadyActive);
  EXPECT_EQ(error->description(), "A focus session is already active.");
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.storedSession(), onDisk);
  EXPECT_EQ(f.runner->calls.size(), 1U);
  EXPECT_TRUE(f.changes.empty());
}

TEST(SessionEngineTest, StartDuringAStrictSessionFailsAlreadyActive) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  const BlockSession running = *f.engine.activeSession();
  const auto error = errorOf<SessionError>([&] {
    f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow.advanced(5));
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), SessionError::Case::alreadyActive);
  EXPECT_EQ(f.engine.activeSession(), running);
  EXPECT_EQ(f.storedSession(), running);
}

TEST(SessionEngineTest, CancelledApprovalOnStartLeavesNoSessionAndStatusOff) {
  SessionFixture f;
  f.refuseNextApproval();
  const auto error = errorOf<BlockingError>(
      [&] { f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), BlockingError::Case::authorizationCancelled);
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_FALSE(f.engine.lastError().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_TRUE(f.changes.empty());
}

TEST(SessionEngineTest, FailedStartLeavesTheAttentionMessageAsItWas) {
  SessionFixture f;
  testing::writeBytes(f.local.url(), "not json");
  f.engine.recover(kTestNow);
  const std::optional<std::string> message = f.engine.lastError();
  ASSERT_TRUE(message.has_value());
  fs::remove(f.local.url());

  f.refuseNextApproval();
  EXPECT_THROW(f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow),
               BlockingError);
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_EQ(f.engine.lastError(), message);
}

// ---- ending ----

TEST(SessionEngineTest, EndFlexibleWithNoSessionSucceedsAndDoesNothing) {
  SessionFixture f;
  EXPECT_NO_THROW(f.engine.endFlexible(kTestNow));
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_FALSE(fs::exists(f.local.url()));
  EXPECT_TRUE(f.changes.empty());
}

TEST(SessionEngineTest, EndFlexibleRemovesBlockThenSessionAndReportsOff) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  std::optional<BlockSession> storedWhenHostsChanged;
  f.runner->thenReplace([&](const fs::path& source, const fs::path& destination) {
    storedWhenHostsChanged = f.storedSession();
    copyFileAtomically(source, destination);
  });
  f.engine.endFlexible(kTestNow.advanced(60));

  // Hosts first, state second: the session was still stored while the block came out.
  EXPECT_TRUE(storedWhenHostsChanged.has_value());
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_TRUE(f.hostsFileIsPlain());
  ASSERT_EQ(f.changes.size(), 2U);
  EXPECT_EQ(f.changes[1], std::nullopt);
}

TEST(SessionEngineTest, StrictSessionCannotBeEndedOneSecondBeforeItsEnd) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
  const auto error = errorOf<SessionError>([&] { f.engine.endFlexible(kEnd.advanced(-1)); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), SessionError::Case::strictSessionLocked);
  EXPECT_EQ(error->description(), "Strict sessions cannot be ended before their timer expires.");
  EXPECT_TRUE(f.engine.activeSession().has_value());
  EXPECT_TRUE(f.storedSession().has_value());
  EXPECT_TRUE(f.blocks(group));
}

TEST(SessionEngineTest, StrictSessionEndsAtItsEndExactly) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  f.engine.endFlexible(kEnd);
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
}

TEST(SessionEngineTest, EndIfFlexibleLeavesARunningStrictSessionAloneWithoutFailing) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  EXPECT_FALSE(f.engine.endIfFlexible(kEnd.advanced(-1)));
  EXPECT_TRUE(f.engine.activeSession().has_value());
  EXPECT_TRUE(f.engine.endIfFlexible(kEnd));
  EXPECT_FALSE(f.engine.activeSession().has_value());
}

TEST(SessionEngineTest, EndIfFlexibleEndsAFlexibleSessionAndIsFalseWithoutOne) {
  SessionFixture f;
  EXPECT_FALSE(f.engine.endIfFlexible(kTestNow));
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  EXPECT_TRUE(f.engine.endIfFlexible(kTestNow.advanced(1)));
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
}

TEST(SessionEngineTest, FailedRemovalOnEndKeepsTheSessionEverywhere) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  f.refuseNextApproval();
  EXPECT_THROW(f.engine.endFlexible(kTestNow.advanced(60)), BlockingError);
  EXPECT_TRUE(f.engine.activeSession().has_value());
  EXPECT_TRUE(f.storedSession().has_value());
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  // A failure of a command the user gave reaches the user as raised, not as attention.
  EXPECT_FALSE(f.engine.lastError().has_value());
}

// ---- tick ----

TEST(SessionEngineTest, TickBeforeTheEndDoesNothing) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
  f.engine.tick(kEnd.advanced(-0.5));
  EXPECT_TRUE(f.engine.activeSession().has_value());
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(f.runner->calls.size(), 1U);
}

TEST(SessionEngineTest, TickAtTheEndRemovesTheBlockAndEndsTheSession) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  f.engine.tick(kEnd);
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_EQ(f.changes.back(), std::nullopt);
}

TEST(SessionEngineTest, RefusedApprovalAtExpiryNeedsAttentionAndALaterTickEndsTheSession) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);

  f.refuseNextApproval();
  EXPECT_NO_THROW(f.engine.tick(kEnd));
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_EQ(f.engine.lastError(), kCancelled);
  ASSERT_TRUE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.activeSession()->state, SessionState::attentionRequired);
  ASSERT_TRUE(f.storedSession().has_value());
  EXPECT_EQ(f.storedSession()->state, SessionState::attentionRequired);
  // The user stays blocked past the end until a removal succeeds.
  EXPECT_TRUE(f.blocks(group));

  f.engine.tick(kEnd.advanced(1));
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_FALSE(f.engine.lastError().has_value());
  EXPECT_EQ(f.changes.back(), std::nullopt);
}

TEST(SessionEngineTest, TickWhoseStateWriteFailsNeedsAttentionWithTheBlockGone) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  // A state file that can't be read makes the locked write after the removal fail.
  f.runner->thenReplace([&](const fs::path& source, const fs::path& destination) {
    copyFileAtomically(source, destination);
    testing::writeBytes(f.local.url(), "not json");
  });
  f.engine.tick(kEnd);
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_TRUE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_TRUE(f.engine.lastError().has_value());
}

// ---- recover ----

TEST(SessionEngineTest, RecoverWithNoStoredSessionIsOffAndBringsGroupsBack) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.local.updateAtomically([&](PersistedState& state) { state.groups = {group}; });
  f.engine.recover(kTestNow);
  EXPECT_EQ(f.engine.groups(), std::vector<DomainGroup>{group});
  EXPECT_FALSE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_TRUE(f.changes.empty());
}

TEST(SessionEngineTest, RecoverWithNoStoredGroupsFallsBackToTheSeededGroup) {
  SessionFixture f;
  f.engine.replaceGroups({makeNewsGroup()});
  f.local.updateAtomically([](PersistedState& state) { state.groups.clear(); });
  f.engine.recover(kTestNow);
  EXPECT_EQ(f.engine.groups(), std::vector<DomainGroup>{DomainGroup::socialDistractions()});
}

TEST(SessionEngineTest, RecoverWithASessionPastItsEndRemovesTheBlockAndEndsOff) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  auto restarted = f.restartedEngine();
  std::vector<std::optional<BlockSession>> changes;
  restarted->onSessionChanged = [&](const auto& session) { changes.push_back(session); };

  restarted->recover(kEnd.advanced(3600));
  EXPECT_FALSE(restarted->activeSession().has_value());
  EXPECT_FALSE(f.storedSession().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
  EXPECT_EQ(restarted->protectionStatus(), ProtectionStatus::off);
  EXPECT_EQ(changes, std::vector<std::optional<BlockSession>>{std::nullopt});
}

TEST(SessionEngineTest, RecoverWhenTheHostsFileAlreadyHoldsTheRightHostsAsksNoApproval) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  const BlockSession session = *f.engine.activeSession();
  f.runner->calls.clear();
  auto restarted = f.restartedEngine();
  std::vector<std::optional<BlockSession>> changes;
  restarted->onSessionChanged = [&](const auto& found) { changes.push_back(found); };

  f.blocker->calls.clear();
  restarted->recover(kTestNow.advanced(60));
  EXPECT_EQ(f.blocker->calls, std::vector<std::string>{"status"});
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_EQ(f.runner->refreshCount, 1);  // only the one of the start
  EXPECT_EQ(restarted->activeSession(), session);
  EXPECT_EQ(restarted->protectionStatus(), ProtectionStatus::active);
  EXPECT_EQ(changes, std::vector<std::optional<BlockSession>>{session});
}

TEST(SessionEngineTest, RecoverRepairsAHostsFileEditedBySomeoneElse) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  testing::writeBytes(f.hostsPath, testing::kPlainHosts + "# edited\n");
  auto restarted = f.restartedEngine();
  restarted->recover(kTestNow.advanced(60));
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(restarted->protectionStatus(), ProtectionStatus::active);
}

TEST(SessionEngineTest, RecoverWithAnUnreadableStateFileNeedsAttentionAndHasNoSession) {
  SessionFixture f;
  testing::writeBytes(f.local.url(), "{ this is not a state file");
  f.engine.recover(kTestNow);
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_FALSE(f.engine.activeSession().has_value());
  ASSERT_TRUE(f.engine.lastError().has_value());
  EXPECT_FALSE(f.engine.lastError()->empty());
  EXPECT_EQ(testing::readBytes(f.local.url()), "{ this is not a state file");
  EXPECT_TRUE(f.runner->calls.empty());
}

TEST(SessionEngineTest, RecoverWhoseRepairIsRefusedNeedsAttentionAndMarksTheStoredSession) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  testing::writeBytes(f.hostsPath, testing::kPlainHosts);
  auto restarted = f.restartedEngine();
  f.refuseNextApproval();
  restarted->recover(kTestNow.advanced(60));
  EXPECT_EQ(restarted->protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_EQ(restarted->lastError(), kCancelled);
  ASSERT_TRUE(f.storedSession().has_value());
  EXPECT_EQ(f.storedSession()->state, SessionState::attentionRequired);
}

TEST(SessionEngineTest, SuccessfulRecoverKeepsAnEarlierMessage) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  testing::writeBytes(f.hostsPath, testing::kPlainHosts);
  f.refuseNextApproval();
  f.engine.recover(kTestNow.advanced(60));
  ASSERT_EQ(f.engine.lastError(), kCancelled);

  f.engine.recover(kTestNow.advanced(120));
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(f.engine.lastError(), kCancelled);
}

// ---- attention and retry ----

TEST(SessionEngineTest, AfterAttentionASuccessfulRetryIsActiveWhileTheSessionStillSaysAttention) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
  f.refuseNextApproval();
  f.engine.tick(kEnd);
  ASSERT_EQ(f.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  const std::size_t changesBefore = f.changes.size();

  f.engine.retryProtection();
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::active);
  EXPECT_FALSE(f.engine.lastError().has_value());
  ASSERT_TRUE(f.engine.activeSession().has_value());
  EXPECT_EQ(f.engine.activeSession()->state, SessionState::attentionRequired);
  EXPECT_EQ(f.storedSession(), f.engine.activeSession());
  EXPECT_TRUE(f.blocks(group));
  EXPECT_EQ(f.changes.size(), changesBefore);
}

TEST(SessionEngineTest, RefusedRetryStaysInAttention) {
  SessionFixture f;
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::flexible, kTestNow);
  testing::writeBytes(f.hostsPath, testing::kPlainHosts);
  f.refuseNextApproval();
  EXPECT_NO_THROW(f.engine.retryProtection());
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_EQ(f.engine.lastError(), kCancelled);
  EXPECT_EQ(f.engine.activeSession()->state, SessionState::attentionRequired);
}

TEST(SessionEngineTest, RetryWithoutASessionDoesNothing) {
  SessionFixture f;
  f.engine.retryProtection();
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_TRUE(f.runner->calls.empty());
}

// ---- loading, groups, remaining time ----

TEST(SessionEngineTest, LoadPersistedStateWithASessionNeedsAttentionAndLeavesHostsAlone) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  testing::writeBytes(f.hostsPath, testing::kPlainHosts);
  auto restarted = f.restartedEngine();
  restarted->loadPersistedState();
  EXPECT_EQ(restarted->groups(), std::vector<DomainGroup>{group});
  EXPECT_EQ(restarted->activeSession(), f.engine.activeSession());
  EXPECT_EQ(restarted->protectionStatus(), ProtectionStatus::attentionRequired);
  EXPECT_FALSE(restarted->lastError().has_value());
  EXPECT_TRUE(f.hostsFileIsPlain());
}

TEST(SessionEngineTest, LoadPersistedStateWithoutASessionIsOffAndRaisesAnUnreadableFile) {
  SessionFixture f;
  f.engine.loadPersistedState();
  EXPECT_EQ(f.engine.protectionStatus(), ProtectionStatus::off);
  EXPECT_EQ(f.engine.groups(), std::vector<DomainGroup>{DomainGroup::socialDistractions()});
  testing::writeBytes(f.local.url(), "[]");
  EXPECT_ANY_THROW(f.engine.loadPersistedState());
  EXPECT_FALSE(f.engine.lastError().has_value());
}

TEST(SessionEngineTest, ReplaceGroupsDuringAStrictSessionFailsAndTheGroupsStay) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.engine.start(group, kHalfHour, SessionMode::strict, kTestNow);
  const auto error = errorOf<SessionError>([&] {
    f.engine.replaceGroups({group, DomainGroup::socialDistractions()});
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), SessionError::Case::strictSessionLocked);
  EXPECT_EQ(f.engine.groups(), std::vector<DomainGroup>{group});
  EXPECT_EQ(f.local.load().groups, std::vector<DomainGroup>{group});
}

TEST(SessionEngineTest, ReplaceGroupsDuringAFlexibleSessionLeavesTheSessionGroupAsItWas) {
  SessionFixture f;
  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  DomainGroup changed = group;
  changed.name = "Renamed";
  changed.rules.pop_back();
  f.engine.replaceGroups({changed});
  EXPECT_EQ(f.engine.groups(), std::vector<DomainGroup>{changed});
  EXPECT_EQ(f.local.load().groups, std::vector<DomainGroup>{changed});
  EXPECT_EQ(f.engine.activeSession()->group, group);
  EXPECT_EQ(f.storedSession()->group, group);
  EXPECT_TRUE(f.blocks(group));
}

TEST(SessionEngineTest, ReplaceGroupsChecksTheStoredSessionNotTheOneInMemory) {
  SessionFixture f;
  auto other = f.restartedEngine();
  other->start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  EXPECT_THROW(f.engine.replaceGroups({}), SessionError);
}

TEST(SessionEngineTest, GroupFindsTheFirstGroupWithTheId) {
  SessionFixture f;
  DomainGroup first = makeNewsGroup();
  DomainGroup second = first;
  second.name = "Second";
  f.engine.replaceGroups({first, second});
  EXPECT_EQ(f.engine.group(first.id), first);
  EXPECT_EQ(f.engine.group(Uuid::random()), std::nullopt);
}

TEST(SessionEngineTest, RemainingTimeIsThePlainDifferenceAndZeroAfterTheEnd) {
  SessionFixture f;
  EXPECT_EQ(f.engine.remainingTime(kTestNow), 0.0);
  f.engine.start(makeNewsGroup(), kHalfHour, SessionMode::strict, kTestNow);
  EXPECT_EQ(f.engine.remainingTime(kTestNow.advanced(0.25)), kHalfHour - 0.25);
  EXPECT_EQ(f.engine.remainingTime(kEnd), 0.0);
  EXPECT_EQ(f.engine.remainingTime(kEnd.advanced(90)), 0.0);
}

// ---- the state file shared with the task store ----

TEST(SessionEngineTest, SessionWritesBetweenTwoTaskTransactionsCauseNoRevisionConflict) {
  SessionFixture f;
  const FocusTask task = testing::makeTask().titled("Report");
  TaskStore store(f.local);
  const auto addTask = [&](PersistedState& state) { state.tasks.push_back(task); };
  const TaskStoreSnapshot first =
      store.transact(0, MutationSource::app, "task.create", task.id, kTestNow, addTask);
  ASSERT_EQ(first.revision(), 1);

  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  EXPECT_EQ(f.local.load().revision, 1);

  const TaskStoreSnapshot second =
      store.transact(first.revision(), MutationSource::app, "task.update", task.id, kTestNow,
                     [](PersistedState& state) { state.tasks[0].title = "Report, second draft"; });
  EXPECT_EQ(second.revision(), 2);
  // Each owner sees the other's write: the transaction kept the session and the groups.
  EXPECT_EQ(second.state().activeSession, f.engine.activeSession());
  EXPECT_EQ(second.state().groups, std::vector<DomainGroup>{group});

  f.engine.endFlexible(kTestNow.advanced(60));
  const PersistedState onDisk = f.local.load();
  EXPECT_EQ(onDisk.revision, 2);
  EXPECT_EQ(onDisk.tasks.at(0).title, "Report, second draft");
  EXPECT_EQ(onDisk.auditEvents.size(), 2U);
  EXPECT_FALSE(onDisk.activeSession.has_value());
  EXPECT_EQ(store.snapshot().state(), onDisk);
}

TEST(SessionEngineTest, SessionWritesKeepEverythingElseInTheFileAndARecoveryCopy) {
  SessionFixture f;
  PersistedState seeded = testing::makeFullState();
  seeded.activeSession.reset();
  f.local.save(seeded);
  const std::size_t copiesBefore = testing::filesIn(f.local.recoveryFolder()).size();

  const DomainGroup group = makeNewsGroup();
  f.engine.replaceGroups({group});
  f.engine.start(group, kHalfHour, SessionMode::flexible, kTestNow);
  PersistedState expected = seeded;
  expected.groups = {group};
  expected.activeSession = f.engine.activeSession();
  EXPECT_EQ(f.local.load(), expected);
  EXPECT_EQ(testing::filesIn(f.local.recoveryFolder()).size(), copiesBefore + 2);
}

}  // namespace
}  // namespace brindlet

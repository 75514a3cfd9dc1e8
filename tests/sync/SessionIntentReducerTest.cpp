#include <gtest/gtest.h>

#include "SyncTestRecords.h"
#include "sync/SessionIntentReducer.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeIntent;

const Uuid kSession = Uuid::fromLiteral("5E551014-0000-4000-8000-000000000001");
const Uuid kOtherSession = Uuid::fromLiteral("5E551014-0000-4000-8000-000000000002");

// 2026-11-21 at the given UTC time of day.
Instant at(int hour, int minute) {
  return Instant::fromUnix(1795219200.0 + hour * 3600.0 + minute * 60.0);
}

TEST(SessionIntentReducerTest, FlexibleActiveMeetsEndedOneRevisionHigherAndEnds) {
  const SyncedSessionIntent local =
      makeIntent(kSession, kTestNow, 30, SyncedSessionMode::flexible, SyncedSessionState::active);
  SyncedSessionIntent incoming = local;
  incoming.state = SyncedSessionState::ended;
  incoming.revision = local.revision + 1;
  const SyncedSessionIntent result =
      SessionIntentReducer::resolve(local, incoming, kTestNow.advanced(60));
  EXPECT_EQ(result.state, SyncedSessionState::ended);
  EXPECT_EQ(result.revision, local.revision + 1);
}

TEST(SessionIntentReducerTest, StrictActiveOutlastsFlexibleEndedWithHigherRevisionAndEarlierEnd) {
  SyncedSessionIntent local =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::strict, SyncedSessionState::active);
  ASSERT_EQ(local.endsAt, at(10, 0));
  SyncedSessionIntent incoming = local;
  incoming.mode = SyncedSessionMode::flexible;
  incoming.state = SyncedSessionState::ended;
  incoming.endsAt = at(9, 0);
  incoming.revision = local.revision + 1;
  incoming.sourceDeviceID = "phone";

  const SyncedSessionIntent result = SessionIntentReducer::resolve(local, incoming, at(9, 30));
  EXPECT_EQ(result.mode, SyncedSessionMode::strict);
  EXPECT_EQ(result.state, SyncedSessionState::active);
  EXPECT_EQ(result.endsAt, at(10, 0));
  // The other way round, the same answer.
  const SyncedSessionIntent reversed = SessionIntentReducer::resolve(incoming, local, at(9, 30));
  EXPECT_EQ(reversed, result);
}

TEST(SessionIntentReducerTest, StrictSessionAtOrAfterItsEndIsEndedWhateverEitherSideSaid) {
  const SyncedSessionIntent active =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::strict, SyncedSessionState::active);
  SyncedSessionIntent alsoActive = active;
  alsoActive.sourceDeviceID = "phone";
  for (const Instant now : {at(10, 0), at(11, 0)}) {
    EXPECT_EQ(SessionIntentReducer::resolve(active, alsoActive, now).state,
              SyncedSessionState::ended);
    EXPECT_EQ(SessionIntentReducer::resolve(std::nullopt, active, now).state,
              SyncedSessionState::ended);
  }
}

TEST(SessionIntentReducerTest, StrictSessionReadsActiveBeforeItsEndEvenWhenTheRecordSaysEnded) {
  const SyncedSessionIntent ended =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::strict, SyncedSessionState::ended);
  EXPECT_EQ(SessionIntentReducer::resolve(std::nullopt, ended, at(9, 59)).state,
            SyncedSessionState::active);
}

TEST(SessionIntentReducerTest, FlexibleActiveWithPastEndIsNormalizedToEndedKeepingItsRevision) {
  const SyncedSessionIntent intent =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::flexible, SyncedSessionState::active);
  const SyncedSessionIntent result = SessionIntentReducer::normalized(intent, at(10, 30));
  EXPECT_EQ(result.state, SyncedSessionState::ended);
  EXPECT_EQ(result.revision, intent.revision);
  SyncedSessionIntent expected = intent;
  expected.state = SyncedSessionState::ended;
  EXPECT_EQ(result, expected);
}

TEST(SessionIntentReducerTest, EqualActiveVersionsFromSourcesAAndBSettleOnBOnEitherDevice) {
  const SyncedSessionIntent fromA = makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::flexible,
                                               SyncedSessionState::active, "a");
  SyncedSessionIntent fromB = fromA;
  fromB.sourceDeviceID = "b";
  EXPECT_EQ(SessionIntentReducer::resolve(fromA, fromB, at(9, 10)).sourceDeviceID, "b");
  EXPECT_EQ(SessionIntentReducer::resolve(fromB, fromA, at(9, 10)).sourceDeviceID, "b");
}

TEST(SessionIntentReducerTest, VersionsAlikeInAllFourTestsKeepLocal) {
  const SyncedSessionIntent local = makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::flexible);
  SyncedSessionIntent incoming = local;
  incoming.endsAt = at(9, 45);
  EXPECT_FALSE(SessionIntentReducer::isIncomingPreferred(local, incoming));
  EXPECT_EQ(SessionIntentReducer::resolve(local, incoming, at(9, 10)).endsAt, at(10, 0));
}

TEST(SessionIntentReducerTest, PreferenceGoesByRevisionThenEndedThenLaterStartThenDevice) {
  const SyncedSessionIntent base = makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::flexible,
                                              SyncedSessionState::active, "m");
  SyncedSessionIntent higher = base;
  higher.revision += 2;
  higher.sourceDeviceID = "a";
  EXPECT_TRUE(SessionIntentReducer::isIncomingPreferred(base, higher));
  EXPECT_FALSE(SessionIntentReducer::isIncomingPreferred(higher, base));

  SyncedSessionIntent ended = base;
  ended.state = SyncedSessionState::ended;
  ended.startedAt = at(8, 0);
  EXPECT_TRUE(SessionIntentReducer::isIncomingPreferred(base, ended));
  EXPECT_FALSE(SessionIntentReducer::isIncomingPreferred(ended, base));

  SyncedSessionIntent later = base;
  later.startedAt = at(9, 1);
  later.sourceDeviceID = "a";
  EXPECT_TRUE(SessionIntentReducer::isIncomingPreferred(base, later));
  EXPECT_FALSE(SessionIntentReducer::isIncomingPreferred(later, base));
}

TEST(SessionIntentReducerTest, FlexibleEndedWithLowerRevisionDoesNotEndANewerVersion) {
  const SyncedSessionIntent ended =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::flexible, SyncedSessionState::ended);
  SyncedSessionIntent newer = ended;
  newer.state = SyncedSessionState::active;
  newer.revision = ended.revision + 2;
  EXPECT_EQ(SessionIntentReducer::resolve(ended, newer, at(9, 10)).state,
            SyncedSessionState::active);
  EXPECT_EQ(SessionIntentReducer::resolve(newer, ended, at(9, 10)).state,
            SyncedSessionState::active);
}

TEST(SessionIntentReducerTest, StrictnessSpreadsToTheWidestSpan) {
  const SyncedSessionIntent strict =
      makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::strict, SyncedSessionState::active);
  SyncedSessionIntent flexible = strict;
  flexible.mode = SyncedSessionMode::flexible;
  flexible.startedAt = at(8, 30);
  flexible.endsAt = at(10, 30);
  const SyncedSessionIntent result = SessionIntentReducer::resolve(flexible, strict, at(9, 10));
  EXPECT_EQ(result.mode, SyncedSessionMode::strict);
  EXPECT_EQ(result.startedAt, at(8, 30));
  EXPECT_EQ(result.endsAt, at(10, 30));
  EXPECT_EQ(result.state, SyncedSessionState::active);
}

TEST(SessionIntentReducerTest, DifferentSessionsAreNotMerged) {
  const SyncedSessionIntent strict = makeIntent(kSession, at(9, 0), 60, SyncedSessionMode::strict);
  const SyncedSessionIntent later =
      makeIntent(kOtherSession, at(9, 30), 10, SyncedSessionMode::flexible);
  const SyncedSessionIntent result = SessionIntentReducer::resolve(strict, later, at(9, 31));
  EXPECT_EQ(result, later);
}

}  // namespace
}  // namespace brindlet

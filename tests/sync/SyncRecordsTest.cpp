#include <gtest/gtest.h>

#include <string>

#include "Builders.h"
#include "support/Instant.h"
#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/RestrictionProfileReference.h"
#include "sync/SessionIntentRevision.h"
#include "sync/SyncModelCodec.h"
#include "sync/SyncModelError.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {
namespace {

const Uuid kSession = Uuid::fromLiteral("AAAAAAAA-0000-0000-0000-000000000001");
const Uuid kProfile = Uuid::fromLiteral("F0C05B10-0000-4000-8000-000000000001");

SyncedSessionIntent makeIntent() {
  return {.sessionID = kSession,
          .profileID = kProfile,
          .mode = SyncedSessionMode::strict,
          .startedAt = Instant(100.5),
          .endsAt = Instant(1600.25),
          .revision = 7,
          .state = SyncedSessionState::active,
          .sourceDeviceID = "mac-1"};
}

template <typename Decode>
SyncModelError decodingError(const std::string& bytes, Decode decode) {
  try {
    (void)decode(bytes);
  } catch (const SyncModelError& error) {
    return error;
  }
  ADD_FAILURE() << "decoding succeeded: " << bytes;
  return SyncModelError::corruptPayload();
}

SyncModelError intentDecodingError(const std::string& bytes) {
  return decodingError(bytes, SyncModelCodec::decodeSessionIntent);
}

TEST(SessionIntentRevisionTest, OneAndAHalfSecondsAfterUnixEpochIs3000ActiveAnd3001Ended) {
  const Instant start = Instant::fromUnix(1.5);
  EXPECT_EQ(SessionIntentRevision::value(start, SyncedSessionState::active), 3000);
  EXPECT_EQ(SessionIntentRevision::value(start, SyncedSessionState::ended), 3001);
}

TEST(SessionIntentRevisionTest, DateBeforeUnixEpochIsZeroActiveAndOneEnded) {
  const Instant start = Instant::fromUnix(-86400.25);
  EXPECT_EQ(SessionIntentRevision::value(start, SyncedSessionState::active), 0);
  EXPECT_EQ(SessionIntentRevision::value(start, SyncedSessionState::ended), 1);
}

TEST(SessionIntentRevisionTest, MillisecondsAreCutTowardZero) {
  EXPECT_EQ(SessionIntentRevision::value(Instant::fromUnix(2.0009), SyncedSessionState::active),
            4000);
}

TEST(SessionIntentRevisionTest, LaterSessionOutranksEveryVersionOfEarlierOne) {
  const Instant earlier = testing::kTestNow;
  const Instant later = earlier.advanced(0.001);
  EXPECT_LT(SessionIntentRevision::value(earlier, SyncedSessionState::ended),
            SessionIntentRevision::value(later, SyncedSessionState::active));
}

TEST(SyncModelCodecTest, IntentIsWrittenCompactWithKeysInFieldOrderAndReferenceDates) {
  EXPECT_EQ(SyncModelCodec::encodeSessionIntent(makeIntent()),
            R"({"schemaVersion":1,"sessionID":"AAAAAAAA-0000-0000-0000-000000000001",)"
            R"("profileID":"F0C05B10-0000-4000-8000-000000000001","mode":"strict",)"
            R"("startedAt":100.5,"endsAt":1600.25,"revision":7,"state":"active",)"
            R"("sourceDeviceID":"mac-1"})");
}

TEST(SyncModelCodecTest, IntentRoundTrips) {
  const SyncedSessionIntent intent = makeIntent();
  EXPECT_EQ(SyncModelCodec::decodeSessionIntent(SyncModelCodec::encodeSessionIntent(intent)),
            intent);
}

TEST(SyncModelCodecTest, LowerCaseSessionIdIsRead) {
  std::string bytes = SyncModelCodec::encodeSessionIntent(makeIntent());
  bytes.replace(bytes.find("AAAAAAAA"), 8, "aaaaaaaa");
  EXPECT_EQ(SyncModelCodec::decodeSessionIntent(bytes).sessionID, kSession);
}

TEST(SyncModelCodecTest, IntentOfAnotherSchemaVersionIsNotEncoded) {
  SyncedSessionIntent intent = makeIntent();
  intent.schemaVersion = 3;
  try {
    (void)SyncModelCodec::encodeSessionIntent(intent);
    FAIL() << "encoded";
  } catch (const SyncModelError& error) {
    EXPECT_EQ(error, SyncModelError::unsupportedSchemaVersion(3));
  }
}

TEST(SyncModelCodecTest, SchemaVersionTwoWithGarbageDecodesToUnsupportedSchemaVersionTwo) {
  EXPECT_EQ(intentDecodingError(R"({"schemaVersion":2,"sessionID":17,"mode":["x"],"junk":null})"),
            SyncModelError::unsupportedSchemaVersion(2));
}

TEST(SyncModelCodecTest, RecordWithoutSchemaVersionIsCorrupt) {
  EXPECT_EQ(intentDecodingError(R"({"sessionID":"x"})"), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, ArrayRootIsCorrupt) {
  EXPECT_EQ(intentDecodingError("[1,2]"), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, VersionOneWithoutModeIsCorrupt) {
  std::string bytes = SyncModelCodec::encodeSessionIntent(makeIntent());
  bytes.erase(bytes.find(R"("mode":"strict",)"), std::string(R"("mode":"strict",)").size());
  EXPECT_EQ(intentDecodingError(bytes), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, TextThatIsNotJsonIsCorrupt) {
  EXPECT_EQ(intentDecodingError("{\"schemaVersion\":1,"), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, SchemaVersionAsTextIsCorrupt) {
  EXPECT_EQ(intentDecodingError(R"({"schemaVersion":"2"})"), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, UnknownModeIsCorrupt) {
  std::string bytes = SyncModelCodec::encodeSessionIntent(makeIntent());
  bytes.replace(bytes.find("strict"), 6, "severe");
  EXPECT_EQ(intentDecodingError(bytes), SyncModelError::corruptPayload());
}

TEST(SyncModelCodecTest, AcknowledgementLeavesOutAbsentErrorCode) {
  const EnforcementAcknowledgement acknowledgement{.sessionID = kSession,
                                                   .deviceID = "d1",
                                                   .appliedRevision = 11,
                                                   .appliedAt = Instant(42),
                                                   .result = EnforcementResult::applied,
                                                   .errorCode = std::nullopt};
  const std::string bytes = SyncModelCodec::jsonBytes(acknowledgement);
  EXPECT_EQ(bytes, R"({"schemaVersion":1,"sessionID":"AAAAAAAA-0000-0000-0000-000000000001",)"
                   R"("deviceID":"d1","appliedRevision":11,"appliedAt":42,"result":"applied"})");
  EXPECT_EQ(SyncModelCodec::decodeAcknowledgement(bytes), acknowledgement);
}

TEST(SyncModelCodecTest, AcknowledgementWithErrorCodeRoundTrips) {
  const EnforcementAcknowledgement acknowledgement{.sessionID = kSession,
                                                   .deviceID = "d1",
                                                   .appliedRevision = 11,
                                                   .appliedAt = Instant(42.5),
                                                   .result = EnforcementResult::failed,
                                                   .errorCode = "shield-1"};
  const std::string bytes = SyncModelCodec::jsonBytes(acknowledgement);
  EXPECT_NE(bytes.find(R"("result":"failed","errorCode":"shield-1"})"), std::string::npos);
  EXPECT_EQ(SyncModelCodec::decodeAcknowledgement(bytes), acknowledgement);
}

TEST(SyncModelCodecTest, DeviceIsWrittenWithKeysInFieldOrderAndRoundTrips) {
  const PairedDevice device{.id = "phone-1",
                            .name = "Ada’s iPhone",
                            .platform = FocusDevicePlatform::iOS,
                            .lastSeenAt = Instant(12.75)};
  const std::string bytes = SyncModelCodec::jsonBytes(device);
  EXPECT_EQ(bytes, R"({"schemaVersion":1,"id":"phone-1","name":"Ada’s iPhone","platform":"iOS",)"
                   R"("lastSeenAt":12.75})");
  EXPECT_EQ(SyncModelCodec::decodeDevice(bytes), device);
}

TEST(SyncModelCodecTest, RestrictionProfileCarriesANameAndThreeCountsOnly) {
  const RestrictionProfileReference profile{.id = kProfile,
                                            .name = "Deep work",
                                            .selectedApplicationCount = 4,
                                            .selectedCategoryCount = 2,
                                            .selectedWebDomainCount = 9};
  const std::string bytes = SyncModelCodec::jsonBytes(profile);
  EXPECT_EQ(bytes, R"({"schemaVersion":1,"id":"F0C05B10-0000-4000-8000-000000000001",)"
                   R"("name":"Deep work","selectedApplicationCount":4,"selectedCategoryCount":2,)"
                   R"("selectedWebDomainCount":9})");
  EXPECT_EQ(SyncModelCodec::decodeRestrictionProfile(bytes), profile);
}

TEST(SyncRecordsTest, NewRecordsCarrySchemaVersionOne) {
  EXPECT_EQ(PairedDevice{}.schemaVersion, 1);
  EXPECT_EQ(SyncedSessionIntent{}.schemaVersion, 1);
  EXPECT_EQ(EnforcementAcknowledgement{}.schemaVersion, 1);
  EXPECT_EQ(RestrictionProfileReference{}.schemaVersion, 1);
}

TEST(SyncRecordsTest, NewRestrictionProfilesGetTheirOwnIds) {
  EXPECT_NE(RestrictionProfileReference{}.id, RestrictionProfileReference{}.id);
}

TEST(SyncRecordsTest, AcknowledgementIdHasUpperCaseSessionAndRecordIdLowerCase) {
  EnforcementAcknowledgement acknowledgement;
  acknowledgement.sessionID = kSession;
  acknowledgement.deviceID = "d1";
  EXPECT_EQ(acknowledgement.id(), "AAAAAAAA-0000-0000-0000-000000000001:d1");
  EXPECT_EQ(acknowledgement.recordID(), "ack:aaaaaaaa-0000-0000-0000-000000000001:d1");
}

TEST(SyncRecordsTest, IntentAndDeviceRecordIdsAreDerivedFromTheirIdentity) {
  EXPECT_EQ(makeIntent().recordID(), "session:aaaaaaaa-0000-0000-0000-000000000001");
  PairedDevice device;
  device.id = "Phone-A";
  EXPECT_EQ(device.recordID(), "device:Phone-A");
}

}  // namespace
}  // namespace brindlet

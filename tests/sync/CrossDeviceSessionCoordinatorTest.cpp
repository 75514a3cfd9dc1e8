#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "RecordingPairingTransport.h"
#include "SyncTestRecords.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "sync/CloudPairingTransportError.h"
#include "sync/CrossDeviceSessionCoordinator.h"

namespace brindlet {
namespace {

using Case = DeviceProtectionStatus::Case;
using testing::kTestNow;
using testing::makeIntent;
using testing::RecordingPairingTransport;

const Uuid kSession = Uuid::fromLiteral("5E551014-0000-4000-8000-000000000001");

PairedDevice phone(Instant lastSeenAt, std::string name = "iPhone") {
  return {.id = "phone-1",
          .name = std::move(name),
          .platform = FocusDevicePlatform::iOS,
          .lastSeenAt = lastSeenAt};
}

EnforcementAcknowledgement answer(const SyncedSessionIntent& intent, std::int64_t revision,
                                  EnforcementResult result = EnforcementResult::applied,
                                  Instant appliedAt = kTestNow) {
  return {.sessionID = intent.sessionID,
          .deviceID = "phone-1",
          .appliedRevision = revision,
          .appliedAt = appliedAt,
          .result = result,
          .errorCode = std::nullopt};
}

class CrossDeviceSessionCoordinatorTest : public ::testing::Test {
 protected:
  std::shared_ptr<RecordingPairingTransport> transport =
      std::make_shared<RecordingPairingTransport>();
  CrossDeviceSessionCoordinator mac{transport, "mac-1"};
  SyncedSessionIntent intent = makeIntent(kSession, kTestNow, 30, SyncedSessionMode::flexible);
};

TEST_F(CrossDeviceSessionCoordinatorTest, ProtectionWaitsWhenTheAnswerIsForAnOlderRevision) {
  mac.receive(phone(kTestNow));
  intent.revision = 11;
  (void)mac.receive(intent, kTestNow);
  mac.receive(answer(intent, 10));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow.advanced(60)),
            DeviceProtectionStatus::of(Case::waitingForIPhone));
}

TEST_F(CrossDeviceSessionCoordinatorTest, AppliedAnswerAtTheCurrentRevisionAfterTheEndIsExpired) {
  mac.receive(phone(kTestNow));
  (void)mac.receive(intent, kTestNow);
  mac.receive(answer(intent, intent.revision));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow.advanced(60)),
            DeviceProtectionStatus::protectedUntil(intent.endsAt));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, intent.endsAt),
            DeviceProtectionStatus::of(Case::expired));
}

TEST_F(CrossDeviceSessionCoordinatorTest, ProtectionFollowsTheDerivationStepByStep) {
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::notPaired));
  mac.receive(phone(kTestNow));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::waitingForIPhone));
  (void)mac.receive(intent, kTestNow);
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::waitingForIPhone));

  mac.receive(answer(intent, intent.revision, EnforcementResult::authorizationRequired));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::authorizationRequired));
  mac.receive(
      answer(intent, intent.revision, EnforcementResult::profileMissing, kTestNow.advanced(1)));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::profileMissing));
  mac.receive(
      answer(intent, intent.revision, EnforcementResult::entitlementMissing, kTestNow.advanced(2)));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::entitlementMissing));
  EnforcementAcknowledgement failed =
      answer(intent, intent.revision, EnforcementResult::failed, kTestNow.advanced(3));
  failed.errorCode = "shield-7";
  mac.receive(failed);
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::failed("shield-7"));
}

TEST_F(CrossDeviceSessionCoordinatorTest, EndedIntentReadsExpired) {
  mac.receive(phone(kTestNow));
  intent.state = SyncedSessionState::ended;
  intent.revision += 1;
  (void)mac.receive(intent, kTestNow);
  mac.receive(answer(intent, intent.revision));
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::expired));
}

TEST_F(CrossDeviceSessionCoordinatorTest, OlderAnswerOrSameRevisionAnsweredEarlierIsIgnored) {
  mac.receive(answer(intent, 12, EnforcementResult::applied, kTestNow.advanced(10)));
  mac.receive(answer(intent, 11, EnforcementResult::failed, kTestNow.advanced(20)));
  mac.receive(answer(intent, 12, EnforcementResult::failed, kTestNow.advanced(5)));
  ASSERT_EQ(mac.snapshot().acknowledgements.size(), 1U);
  EXPECT_EQ(mac.snapshot().acknowledgements[0].result, EnforcementResult::applied);
  mac.receive(answer(intent, 12, EnforcementResult::profileMissing, kTestNow.advanced(10)));
  EXPECT_EQ(mac.snapshot().acknowledgements[0].result, EnforcementResult::profileMissing);
}

TEST_F(CrossDeviceSessionCoordinatorTest, DeletedSessionIdRemovesNothing) {
  mac.receive(phone(kTestNow));
  (void)mac.receive(intent, kTestNow);
  mac.receive(answer(intent, intent.revision));
  const CrossDeviceCoordinatorSnapshot before = mac.snapshot();
  mac.apply({.devices = {},
             .intents = {},
             .acknowledgements = {},
             .deletedRecordIDs = {intent.recordID(), answer(intent, 0).recordID(), "other:x"},
             .cursor = std::nullopt},
            kTestNow);
  EXPECT_EQ(mac.snapshot(), before);
}

TEST_F(CrossDeviceSessionCoordinatorTest, DeletedDeviceIdRemovesTheDevice) {
  mac.receive(phone(kTestNow));
  mac.apply({.devices = {},
             .intents = {},
             .acknowledgements = {},
             .deletedRecordIDs = {"device:phone-1"},
             .cursor = std::nullopt},
            kTestNow);
  EXPECT_TRUE(mac.snapshot().devices.empty());
  EXPECT_EQ(mac.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::of(Case::notPaired));
}

TEST_F(CrossDeviceSessionCoordinatorTest, ApplyTakesDevicesIntentsAndAnswersButLeavesTheCursor) {
  mac.apply({.devices = {phone(kTestNow)},
             .intents = {intent},
             .acknowledgements = {answer(intent, intent.revision)},
             .deletedRecordIDs = {},
             .cursor = "9"},
            kTestNow);
  const CrossDeviceCoordinatorSnapshot snapshot = mac.snapshot();
  EXPECT_EQ(snapshot.devices, std::vector<PairedDevice>{phone(kTestNow)});
  EXPECT_EQ(snapshot.intents, std::vector<SyncedSessionIntent>{intent});
  EXPECT_EQ(snapshot.acknowledgements.size(), 1U);
  EXPECT_FALSE(snapshot.cursor.has_value());
}

TEST_F(CrossDeviceSessionCoordinatorTest,
       BatchWithoutCursorMakesTheNextFetchStartFromTheBeginning) {
  transport->batches.push_back({.devices = {},
                                .intents = {},
                                .acknowledgements = {},
                                .deletedRecordIDs = {},
                                .cursor = "5"});
  transport->batches.push_back({.devices = {},
                                .intents = {},
                                .acknowledgements = {},
                                .deletedRecordIDs = {},
                                .cursor = std::nullopt});
  (void)mac.refresh(kTestNow);
  EXPECT_EQ(mac.snapshot().cursor, "5");
  (void)mac.refresh(kTestNow);
  EXPECT_FALSE(mac.snapshot().cursor.has_value());
  (void)mac.refresh(kTestNow);
  ASSERT_EQ(transport->fetchCursors.size(), 3U);
  EXPECT_EQ(transport->fetchCursors[0], std::nullopt);
  EXPECT_EQ(transport->fetchCursors[1], "5");
  EXPECT_EQ(transport->fetchCursors[2], std::nullopt);
}

TEST_F(CrossDeviceSessionCoordinatorTest, FailedRefreshChangesNothing) {
  transport->batches.push_back({.devices = {phone(kTestNow)},
                                .intents = {},
                                .acknowledgements = {},
                                .deletedRecordIDs = {},
                                .cursor = "5"});
  (void)mac.refresh(kTestNow);
  const CrossDeviceCoordinatorSnapshot before = mac.snapshot();
  transport->fetchFailure = std::make_exception_ptr(
      CloudPairingTransportError(CloudPairingTransportError::Case::offline));
  EXPECT_THROW((void)mac.refresh(kTestNow), CloudPairingTransportError);
  EXPECT_EQ(mac.snapshot(), before);
}

TEST_F(CrossDeviceSessionCoordinatorTest, OlderDeviceAnnouncementKeepsNewerAndEqualOneReplaces) {
  mac.receive(phone(kTestNow, "Newer"));
  mac.receive(phone(kTestNow.advanced(-60), "Older"));
  EXPECT_EQ(mac.snapshot().devices[0].name, "Newer");
  mac.receive(phone(kTestNow, "Same time"));
  EXPECT_EQ(mac.snapshot().devices[0].name, "Same time");
}

TEST_F(CrossDeviceSessionCoordinatorTest, PublishSendsTheIntentThatStandsNotTheArgument) {
  SyncedSessionIntent ended = intent;
  ended.state = SyncedSessionState::ended;
  ended.revision += 1;
  mac.publish(ended, kTestNow);
  mac.publish(intent, kTestNow);
  ASSERT_EQ(transport->publishedIntents.size(), 2U);
  EXPECT_EQ(transport->publishedIntents[1], ended);
  EXPECT_EQ(mac.intent(kSession), ended);
}

TEST_F(CrossDeviceSessionCoordinatorTest, FailedPublishKeepsTheResolvedIntent) {
  transport->publishFailure = std::make_exception_ptr(
      CloudPairingTransportError(CloudPairingTransportError::Case::offline));
  EXPECT_THROW(mac.publish(intent, kTestNow), CloudPairingTransportError);
  EXPECT_EQ(mac.intent(kSession), intent);
}

TEST_F(CrossDeviceSessionCoordinatorTest, AcknowledgeKeepsTheAnswerBeforePublishingIt) {
  CrossDeviceSessionCoordinator iPhone(transport, "phone-1");
  iPhone.receive(phone(kTestNow));
  (void)iPhone.receive(intent, kTestNow);
  transport->publishFailure = std::make_exception_ptr(std::runtime_error("network down"));
  EXPECT_THROW((void)iPhone.acknowledge(intent, EnforcementResult::applied, kTestNow),
               std::runtime_error);
  EXPECT_EQ(iPhone.protectionStatus("phone-1", kSession, kTestNow),
            DeviceProtectionStatus::protectedUntil(intent.endsAt));

  transport->publishFailure = nullptr;
  const EnforcementAcknowledgement sent =
      iPhone.acknowledge(intent, EnforcementResult::failed, kTestNow.advanced(1), "code-9");
  EXPECT_EQ(sent.deviceID, "phone-1");
  EXPECT_EQ(sent.appliedRevision, intent.revision);
  EXPECT_EQ(sent.errorCode, "code-9");
  EXPECT_EQ(transport->publishedAcknowledgements, std::vector<EnforcementAcknowledgement>{sent});
}

TEST_F(CrossDeviceSessionCoordinatorTest, SnapshotRestoresTheSameStateAndItsJsonRoundTrips) {
  mac.receive(phone(kTestNow));
  mac.receive(PairedDevice{.id = "another-phone",
                           .name = "Old iPhone",
                           .platform = FocusDevicePlatform::iOS,
                           .lastSeenAt = kTestNow});
  (void)mac.receive(intent, kTestNow);
  mac.receive(answer(intent, intent.revision));
  transport->batches.push_back({.devices = {},
                                .intents = {},
                                .acknowledgements = {},
                                .deletedRecordIDs = {},
                                .cursor = std::string("\x01\xff", 2)});
  (void)mac.refresh(kTestNow);
  const CrossDeviceCoordinatorSnapshot snapshot = mac.snapshot();
  EXPECT_EQ(snapshot.devices[0].id, "another-phone");

  CrossDeviceSessionCoordinator restored(transport, "mac-1", snapshot);
  EXPECT_EQ(restored.snapshot(), snapshot);

  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, snapshot);
  EXPECT_NE(out.text().find(R"("cursor":"Af8=")"), std::string::npos);
  const JsonDocument document(out.text());
  EXPECT_EQ(crossDeviceCoordinatorSnapshotFromJson(document.root()), snapshot);
}

TEST(CrossDeviceCoordinatorSnapshotTest, EmptySnapshotWritesEveryListAndNoCursor) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, CrossDeviceCoordinatorSnapshot{});
  EXPECT_EQ(out.text(), R"({"devices":[],"intents":[],"acknowledgements":[]})");
}

TEST(CrossDeviceCoordinatorSnapshotTest, MissingListFailsToDecode) {
  const JsonDocument document(std::string(R"({"devices":[],"intents":[]})"));
  EXPECT_THROW((void)crossDeviceCoordinatorSnapshotFromJson(document.root()), DecodingError);
}

TEST(CrossDeviceSessionCoordinatorDeathTest, SnapshotWithTwoRecordsOfOneKeyStopsTheProcess) {
  CrossDeviceCoordinatorSnapshot snapshot;
  snapshot.devices = {phone(kTestNow), phone(kTestNow.advanced(1))};
  EXPECT_DEATH(CrossDeviceSessionCoordinator(std::make_shared<RecordingPairingTransport>(), "mac-1",
                                             snapshot),
               "");
}

}  // namespace
}  // namespace brindlet

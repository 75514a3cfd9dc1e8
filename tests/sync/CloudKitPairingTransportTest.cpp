#include <gtest/gtest.h>

#include <memory>

#include "FixedClock.h"
#include "InMemoryCloudRecordDatabase.h"
#include "SyncTestRecords.h"
#include "TempDir.h"
#include "sync/CloudKitPairingTransport.h"
#include "sync/CloudKitRecordMapper.h"
#include "sync/CloudPairingTransportError.h"
#include "sync/FileCloudCursorStore.h"
#include "sync/SyncModelCodec.h"
#include "sync/SyncModelError.h"

namespace brindlet {
namespace {

using testing::InMemoryCloudRecordDatabase;
using testing::kTestNow;
using testing::makeIntent;
using Operation = InMemoryCloudRecordDatabase::Operation;
using TransportCase = CloudPairingTransportError::Case;

const Uuid kSession = Uuid::fromLiteral("5E551014-0000-4000-8000-000000000001");
const Uuid kOtherSession = Uuid::fromLiteral("5E551014-0000-4000-8000-000000000002");

// The cursor file on disk, with a count of saves so that a test can tell that none was made.
class CountingCursorStore final : public CloudCursorStoring {
 public:
  explicit CountingCursorStore(const std::filesystem::path& folder) : file(folder) {}
  std::optional<std::string> load() override { return file.load(); }
  void save(const std::optional<std::string>& cursor) override {
    ++saveCount;
    file.save(cursor);
  }

  FileCloudCursorStore file;
  int saveCount = 0;
};

PairedDevice phone(std::string id = "phone-1", Instant lastSeenAt = kTestNow) {
  return {.id = std::move(id),
          .name = "iPhone",
          .platform = FocusDevicePlatform::iOS,
          .lastSeenAt = lastSeenAt};
}

CloudRecordEnvelope rawRecord(std::string type, std::string recordID, std::string payload,
                              bool isDeleted = false) {
  return {.recordType = std::move(type),
          .recordID = std::move(recordID),
          .payload = std::move(payload),
          .updatedAt = kTestNow,
          .isDeleted = isDeleted};
}

template <typename Error, typename Operation>
Error caught(Operation operation) {
  try {
    operation();
  } catch (const Error& error) {
    return error;
  }
  throw std::logic_error("the operation did not fail as expected");
}

class CloudKitPairingTransportTest : public ::testing::Test {
 protected:
  testing::TempDir folder;
  std::shared_ptr<InMemoryCloudRecordDatabase> database =
      std::make_shared<InMemoryCloudRecordDatabase>();
  std::shared_ptr<CountingCursorStore> cursorStore =
      std::make_shared<CountingCursorStore>(folder.path());
  std::shared_ptr<testing::FixedClock> clock = std::make_shared<testing::FixedClock>(kTestNow);
  CloudKitPairingTransport transport{database, cursorStore, clock};
};

TEST_F(CloudKitPairingTransportTest, StartsWaitingForICloud) {
  EXPECT_EQ(transport.pairingState(), PairingState::waitingForICloud);
}

TEST_F(CloudKitPairingTransportTest,
       FirstFetchRefusedSubscriptionsIsPermissionDeniedSavingNoCursor) {
  database->failWith(Operation::ensureSubscriptions,
                     CloudPairingTransportError(TransportCase::permissionDenied));
  const auto error =
      caught<CloudPairingTransportError>([&] { (void)transport.fetchChanges(std::nullopt); });
  EXPECT_EQ(error.which(), TransportCase::permissionDenied);
  EXPECT_EQ(transport.pairingState(), PairingState::permissionDenied);
  EXPECT_EQ(cursorStore->saveCount, 0);
  EXPECT_EQ(database->fetchCount, 0);
}

TEST_F(CloudKitPairingTransportTest, TwoVersionsOfOneIntentInEitherOrderYieldRevisionEleven) {
  database->givesEveryVersion = true;
  SyncedSessionIntent ten = makeIntent(kSession, kTestNow, 30, SyncedSessionMode::flexible);
  ten.revision = 10;
  SyncedSessionIntent eleven = ten;
  eleven.revision = 11;
  eleven.state = SyncedSessionState::ended;

  database->save(CloudKitRecordMapper::record(ten, kTestNow));
  database->save(CloudKitRecordMapper::record(eleven, kTestNow));
  PairingChangeBatch batch = transport.fetchChanges(std::nullopt);
  EXPECT_EQ(batch.intents, std::vector<SyncedSessionIntent>{eleven});

  const std::string cursor = database->currentCursor();
  database->save(CloudKitRecordMapper::record(eleven, kTestNow));
  database->save(CloudKitRecordMapper::record(ten, kTestNow));
  batch = transport.fetchChanges(cursor);
  EXPECT_EQ(batch.intents, std::vector<SyncedSessionIntent>{eleven});
}

TEST_F(CloudKitPairingTransportTest, DeletedDeviceWithEmptyPayloadIsReportedWithoutDecoding) {
  database->save(rawRecord("FocusDevice", "device:phone-1", "", true));
  const PairingChangeBatch batch = transport.fetchChanges(std::nullopt);
  EXPECT_EQ(batch.deletedRecordIDs, std::vector<std::string>{"device:phone-1"});
  EXPECT_TRUE(batch.devices.empty());
  EXPECT_EQ(transport.pairingState(), PairingState::paired);
}

TEST_F(CloudKitPairingTransportTest, UnknownRecordTypeIsLeftOutAndTheStateIsPaired) {
  database->save(rawRecord("FocusTimer", "timer:1", "{\"anything\":true}"));
  database->save(CloudKitRecordMapper::record(phone(), kTestNow));
  const PairingChangeBatch batch = transport.fetchChanges(std::nullopt);
  EXPECT_EQ(batch.devices, std::vector<PairedDevice>{phone()});
  EXPECT_TRUE(batch.intents.empty());
  EXPECT_TRUE(batch.acknowledgements.empty());
  EXPECT_TRUE(batch.deletedRecordIDs.empty());
  EXPECT_EQ(transport.pairingState(), PairingState::paired);
}

TEST_F(CloudKitPairingTransportTest, RecordOfSchemaVersionTwoIsUnsupportedAndKeepsTheOldCursor) {
  database->save(CloudKitRecordMapper::record(phone(), kTestNow));
  const PairingChangeBatch first = transport.fetchChanges(std::nullopt);
  ASSERT_TRUE(first.cursor.has_value());
  EXPECT_EQ(cursorStore->load(), first.cursor);

  database->save(rawRecord("FocusDevice", "device:phone-2", R"({"schemaVersion":2,"id":9})"));
  const auto error = caught<SyncModelError>([&] { (void)transport.fetchChanges(first.cursor); });
  EXPECT_EQ(error, SyncModelError::unsupportedSchemaVersion(2));
  EXPECT_EQ(transport.pairingState(), PairingState::schemaUnsupported);
  EXPECT_EQ(FileCloudCursorStore(folder.path()).load(), first.cursor);
}

TEST_F(CloudKitPairingTransportTest, CorruptRecordFailsTheFetchAndLeavesTheState) {
  database->save(rawRecord("FocusSessionIntent", "session:x", "{\"schemaVersion\":1}"));
  EXPECT_EQ(caught<SyncModelError>([&] { (void)transport.fetchChanges(std::nullopt); }),
            SyncModelError::corruptPayload());
  EXPECT_EQ(transport.pairingState(), PairingState::waitingForICloud);
  EXPECT_EQ(cursorStore->saveCount, 0);

  transport.publish(phone());
  ASSERT_EQ(transport.pairingState(), PairingState::paired);
  EXPECT_THROW((void)transport.fetchChanges(std::nullopt), SyncModelError);
  EXPECT_EQ(transport.pairingState(), PairingState::paired);
}

TEST_F(CloudKitPairingTransportTest, GoodRecordsOfAFailedReplyAreNotDelivered) {
  database->save(CloudKitRecordMapper::record(phone(), kTestNow));
  database->save(rawRecord("FocusEnforcementAck", "ack:x:y", "not json"));
  EXPECT_THROW((void)transport.fetchChanges(std::nullopt), SyncModelError);
  EXPECT_EQ(cursorStore->load(), std::nullopt);
}

TEST_F(CloudKitPairingTransportTest, BatchIsSortedAndKeepsTheNewestVersionOfEachRecord) {
  database->givesEveryVersion = true;
  const SyncedSessionIntent second =
      makeIntent(kOtherSession, kTestNow, 30, SyncedSessionMode::strict);
  const SyncedSessionIntent first = makeIntent(kSession, kTestNow, 30, SyncedSessionMode::flexible);
  database->save(CloudKitRecordMapper::record(phone("phone-b"), kTestNow));
  database->save(CloudKitRecordMapper::record(phone("phone-a", kTestNow.advanced(60)), kTestNow));
  database->save(CloudKitRecordMapper::record(phone("phone-a"), kTestNow));
  database->save(CloudKitRecordMapper::record(second, kTestNow));
  database->save(CloudKitRecordMapper::record(first, kTestNow));
  const EnforcementAcknowledgement older{.sessionID = kSession,
                                         .deviceID = "phone-a",
                                         .appliedRevision = first.revision - 1,
                                         .appliedAt = kTestNow,
                                         .result = EnforcementResult::failed,
                                         .errorCode = "x"};
  EnforcementAcknowledgement newer = older;
  newer.appliedRevision = first.revision;
  newer.result = EnforcementResult::applied;
  newer.errorCode.reset();
  database->save(CloudKitRecordMapper::record(newer, kTestNow));
  database->save(CloudKitRecordMapper::record(older, kTestNow));
  database->remove("session:zzz", kTestNow);
  database->remove("device:gone", kTestNow);

  const PairingChangeBatch batch = transport.fetchChanges(std::nullopt);
  ASSERT_EQ(batch.devices.size(), 2U);
  EXPECT_EQ(batch.devices[0], phone("phone-a", kTestNow.advanced(60)));
  EXPECT_EQ(batch.devices[1].id, "phone-b");
  EXPECT_EQ(batch.intents, (std::vector<SyncedSessionIntent>{first, second}));
  EXPECT_EQ(batch.acknowledgements, std::vector<EnforcementAcknowledgement>{newer});
  EXPECT_EQ(batch.deletedRecordIDs, (std::vector<std::string>{"device:gone", "session:zzz"}));
  EXPECT_EQ(batch.cursor, database->currentCursor());
}

TEST_F(CloudKitPairingTransportTest, FetchUsesTheCallersCursorAndSavesTheReplys) {
  database->save(CloudKitRecordMapper::record(phone("phone-a"), kTestNow));
  const PairingChangeBatch first = transport.fetchChanges(std::nullopt);
  database->save(CloudKitRecordMapper::record(phone("phone-b"), kTestNow));
  const PairingChangeBatch second = transport.fetchChanges(first.cursor);
  EXPECT_EQ(second.devices, std::vector<PairedDevice>{phone("phone-b")});
  EXPECT_EQ(FileCloudCursorStore(folder.path()).load(), second.cursor);
}

TEST_F(CloudKitPairingTransportTest, PublishSavesTheRecordStampedWithTheClockAndPairs) {
  clock->time = kTestNow.advanced(90);
  const SyncedSessionIntent intent = makeIntent(kSession, kTestNow, 30, SyncedSessionMode::strict);
  transport.publish(intent);
  const auto saved = database->record("session:5e551014-0000-4000-8000-000000000001");
  ASSERT_TRUE(saved.has_value());
  EXPECT_EQ(saved->recordType, "FocusSessionIntent");
  EXPECT_EQ(saved->updatedAt, kTestNow.advanced(90));
  EXPECT_FALSE(saved->isDeleted);
  EXPECT_EQ(SyncModelCodec::decodeSessionIntent(saved->payload), intent);
  EXPECT_EQ(transport.pairingState(), PairingState::paired);
  EXPECT_EQ(database->subscribedTypes,
            (std::set<std::string>{"FocusDevice", "FocusEnforcementAck", "FocusSessionIntent"}));
}

TEST_F(CloudKitPairingTransportTest, SubscriptionsAreSetUpOnceAndRetriedAfterAFailure) {
  database->failWith(Operation::ensureSubscriptions,
                     CloudPairingTransportError(TransportCase::offline));
  EXPECT_THROW(transport.publish(phone()), CloudPairingTransportError);
  EXPECT_EQ(database->saveCount, 0);
  database->stopFailing(Operation::ensureSubscriptions);
  transport.publish(phone());
  (void)transport.fetchChanges(std::nullopt);
  transport.publish(phone());
  EXPECT_EQ(database->ensureSubscriptionsCount, 2);
}

TEST_F(CloudKitPairingTransportTest, EachDatabaseErrorMovesTheStateAndComesOut) {
  const std::vector<std::pair<CloudPairingTransportError, PairingState>> cases = {
      {CloudPairingTransportError(TransportCase::waitingForICloud), PairingState::waitingForICloud},
      {CloudPairingTransportError(TransportCase::offline), PairingState::offline},
      {CloudPairingTransportError(TransportCase::permissionDenied), PairingState::permissionDenied},
      {CloudPairingTransportError::databaseFailure("quota"), PairingState::offline},
  };
  for (const auto& [error, state] : cases) {
    transport.publish(phone());
    ASSERT_EQ(transport.pairingState(), PairingState::paired);
    database->failWith(Operation::save, error);
    EXPECT_EQ(caught<CloudPairingTransportError>([&] { transport.publish(phone()); }), error);
    EXPECT_EQ(transport.pairingState(), state);
    database->stopFailing(Operation::save);

    transport.publish(phone());
    database->failWith(Operation::fetchChanges, error);
    EXPECT_EQ(
        caught<CloudPairingTransportError>([&] { (void)transport.fetchChanges(std::nullopt); }),
        error);
    EXPECT_EQ(transport.pairingState(), state);
    database->stopFailing(Operation::fetchChanges);
  }
}

TEST_F(CloudKitPairingTransportTest, SuccessAfterUnsupportedSchemaPairsAgain) {
  database->save(rawRecord("FocusDevice", "device:new", R"({"schemaVersion":2})"));
  EXPECT_THROW((void)transport.fetchChanges(std::nullopt), SyncModelError);
  ASSERT_EQ(transport.pairingState(), PairingState::schemaUnsupported);
  transport.publish(phone());
  EXPECT_EQ(transport.pairingState(), PairingState::paired);
}

TEST_F(CloudKitPairingTransportTest, DateThatJsonCantHoldFailsToEncodeAndLeavesTheState) {
  PairedDevice device = phone();
  device.lastSeenAt = Instant(std::numeric_limits<double>::infinity());
  EXPECT_THROW(transport.publish(device), EncodingError);
  EXPECT_EQ(transport.pairingState(), PairingState::waitingForICloud);
  EXPECT_EQ(database->saveCount, 0);
}

TEST(CloudKitRecordMapperTest, EnvelopeOfTheWrongTypeIsCorrupt) {
  const CloudRecordEnvelope envelope = CloudKitRecordMapper::record(phone(), kTestNow);
  EXPECT_EQ(caught<SyncModelError>([&] { (void)CloudKitRecordMapper::intent(envelope); }),
            SyncModelError::corruptPayload());
  EXPECT_EQ(caught<SyncModelError>([&] { (void)CloudKitRecordMapper::acknowledgement(envelope); }),
            SyncModelError::corruptPayload());
  EXPECT_EQ(CloudKitRecordMapper::device(envelope), phone());
}

TEST(CloudKitRecordMapperTest, TombstoneIsCorruptEvenWithAGoodPayload) {
  CloudRecordEnvelope envelope = CloudKitRecordMapper::record(phone(), kTestNow);
  envelope.isDeleted = true;
  EXPECT_EQ(caught<SyncModelError>([&] { (void)CloudKitRecordMapper::device(envelope); }),
            SyncModelError::corruptPayload());
}

TEST(CloudKitRecordMapperTest, RecordsAreNamedByTheirDerivedIds) {
  const SyncedSessionIntent intent = makeIntent(kSession, kTestNow, 30, SyncedSessionMode::strict);
  EnforcementAcknowledgement acknowledgement;
  acknowledgement.sessionID = kSession;
  acknowledgement.deviceID = "d1";
  EXPECT_EQ(CloudKitRecordMapper::record(phone(), kTestNow).recordID, "device:phone-1");
  EXPECT_EQ(CloudKitRecordMapper::record(intent, kTestNow).recordID,
            "session:5e551014-0000-4000-8000-000000000001");
  EXPECT_EQ(CloudKitRecordMapper::record(acknowledgement, kTestNow).recordType,
            "FocusEnforcementAck");
  EXPECT_EQ(CloudKitRecordMapper::record(acknowledgement, kTestNow).recordID,
            "ack:5e551014-0000-4000-8000-000000000001:d1");
}

TEST(CloudRecordEnvelopeTest, JsonFormCarriesThePayloadAsBase64AndNeedsEveryKey) {
  const CloudRecordEnvelope envelope = rawRecord("FocusDevice", "device:a", "{}", false);
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, envelope);
  EXPECT_EQ(out.text(),
            R"({"recordType":"FocusDevice","recordID":"device:a","payload":"e30=",)"
            R"("updatedAt":)" +
                std::to_string(static_cast<long long>(kTestNow.secondsSinceReferenceDate())) +
                R"(,"isDeleted":false})");
  const JsonDocument document(out.text());
  EXPECT_EQ(cloudRecordEnvelopeFromJson(document.root()), envelope);
  const JsonDocument missing(
      std::string(R"({"recordType":"FocusDevice","recordID":"a","payload":"","updatedAt":1})"));
  EXPECT_THROW((void)cloudRecordEnvelopeFromJson(missing.root()), DecodingError);
}

}  // namespace
}  // namespace brindlet

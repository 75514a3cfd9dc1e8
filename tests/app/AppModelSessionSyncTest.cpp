// The model telling paired devices about each blocking session and bringing back their answers:
// over real files, with a coordinator over an in-memory cloud database or a recording transport,
// and without any coordinator as the program composes itself.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "AppModelFixture.h"
#include "InMemoryCloudRecordDatabase.h"
#include "RecordingPairingTransport.h"
#include "sync/CloudKitPairingTransport.h"
#include "sync/CloudPairingTransportError.h"
#include "sync/CrossDeviceSessionCoordinator.h"
#include "sync/FileCloudCursorStore.h"
#include "sync/SessionIntentRevision.h"
#include "sync/SyncModelCodec.h"

namespace brindlet {

// Failure messages show sync records as their JSON.
inline void PrintTo(const SyncedSessionIntent& intent, std::ostream* out) {
  *out << SyncModelCodec::jsonBytes(intent);
}

namespace testing {
namespace {

const std::string kMacID = "mac-1";
const std::string kPhoneID = "phone-1";
const Uuid kProfile = Uuid::fromLiteral("F0C05B10-0000-4000-8000-000000000001");

PairedDevice phone(Instant seenAt) {
  return PairedDevice{
      .id = kPhoneID, .name = "iPhone", .platform = FocusDevicePlatform::iOS, .lastSeenAt = seenAt};
}

PairedDevice otherMac(Instant seenAt) {
  return PairedDevice{.id = "mac-2",
                      .name = "Studio",
                      .platform = FocusDevicePlatform::macOS,
                      .lastSeenAt = seenAt};
}

BlockSession storedSession(const DomainGroup& group, Instant startedAt, Instant endsAt) {
  return BlockSession{.id = Uuid::random(),
                      .group = group,
                      .mode = SessionMode::flexible,
                      .startedAt = startedAt,
                      .endsAt = endsAt,
                      .state = SessionState::active};
}

class AppModelSessionSyncTest : public AppModelTest {
 protected:
  /// A model composed like the program's, but with a way to other devices and a name for this
  /// machine.
  [[nodiscard]] std::unique_ptr<AppModel> makeSyncedModel(
      std::shared_ptr<CrossDeviceSessionCoordinator> coordinator,
      std::optional<std::string> deviceID = kMacID) {
    AppModel::Composition parts = composition();
    parts.crossDeviceCoordinator = std::move(coordinator);
    parts.syncDeviceID = std::move(deviceID);
    return makeModel(std::move(parts));
  }

  /// A cloud transport over the shared database, keeping its cursor in its own folder.
  [[nodiscard]] std::shared_ptr<CloudKitPairingTransport> cloudTransport(const std::string& name) {
    return std::make_shared<CloudKitPairingTransport>(
        database, std::make_shared<FileCloudCursorStore>(folder / name), clock);
  }

  /// The versions of a session's intent as they reached the database, oldest first.
  [[nodiscard]] std::vector<SyncedSessionIntent> intentsInCloud(const Uuid& sessionID) const {
    std::vector<SyncedSessionIntent> intents;
    const std::string recordID = "session:" + sessionID.lowercaseText();
    for (const CloudRecordEnvelope& change : database->changes()) {
      if (change.recordID == recordID && !change.isDeleted) {
        intents.push_back(SyncModelCodec::decodeSessionIntent(change.payload));
      }
    }
    return intents;
  }

  /// The version of a session's intent that stands in the database now.
  [[nodiscard]] std::optional<SyncedSessionIntent> intentInCloud(const Uuid& sessionID) const {
    const std::vector<SyncedSessionIntent> intents = intentsInCloud(sessionID);
    if (intents.empty()) return std::nullopt;
    return intents.back();
  }

  std::shared_ptr<InMemoryCloudRecordDatabase> database =
      std::make_shared<InMemoryCloudRecordDatabase>();
};

// ---- the two cases every launch meets ----

TEST_F(AppModelSessionSyncTest, SyncSessionTransitionWithNothingAndNoLastSessionChangesNothing) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  const std::size_t publishedBefore = published.size();

  model->engine().onSessionChanged(std::nullopt);

  EXPECT_FALSE(model->lastSyncedSession());
  EXPECT_EQ(model->syncRevision(), 0);
  EXPECT_TRUE(transport->publishedIntents.empty());
  EXPECT_TRUE(coordinator->snapshot().intents.empty());
  EXPECT_TRUE(model->state().pairedDeviceProtection.empty());
  // The change was taken up all the same: the screens were handed the unchanged state.
  ASSERT_EQ(published.size(), publishedBefore + 1);
  EXPECT_EQ(published.back().pairingState, PairingState::paired);
}

TEST_F(AppModelSessionSyncTest, LaunchAfterTheSessionEndedSyncsNothing) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.activeSession = storedSession(news, kTestNow.advanced(-1800), kTestNow.advanced(-60));
  store(state);
  HostsBlockingEngine(hostsPath, folder / "earlier", runner).apply(hostsOf(news));
  auto transport = std::make_shared<RecordingPairingTransport>();
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);

  const auto model = makeSyncedModel(coordinator);
  model->recover();

  // Finishing the session at launch reported its end, but this process never saw it run.
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_FALSE(model->lastSyncedSession());
  EXPECT_EQ(model->syncRevision(), 0);
  EXPECT_TRUE(transport->publishedIntents.empty());
  EXPECT_TRUE(model->state().pairedDeviceProtection.empty());
}

TEST_F(AppModelSessionSyncTest, WithoutACoordinatorPairingStateWaitsForICloudAfterEveryHeartbeat) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  EXPECT_FALSE(model->crossDeviceCoordinator());
  EXPECT_FALSE(model->syncDeviceID());

  model->start();
  ASSERT_TRUE(model->state().activeSession);
  const BlockSession session = *model->state().activeSession;
  for (int beat = 0; beat < 3; ++beat) {
    clock->advance(1);
    const std::size_t before = published.size();
    model->heartbeat();
    ASSERT_GT(published.size(), before);
    const AppModelState& state = published.back();
    EXPECT_EQ(state.pairingState, PairingState::waitingForICloud);
    EXPECT_TRUE(state.pairedDevices.empty());
    EXPECT_TRUE(state.pairedDeviceProtection.empty());
  }
  model->endFlexible();
  clock->advance(1);
  model->heartbeat();
  EXPECT_EQ(model->state().pairingState, PairingState::waitingForICloud);
  EXPECT_TRUE(model->state().pairedDevices.empty());
  EXPECT_TRUE(model->state().pairedDeviceProtection.empty());

  // The session stops at the model: it is remembered and its revision worked out, no more.
  EXPECT_EQ(model->lastSyncedSession(), session);
  EXPECT_EQ(model->syncRevision(),
            SessionIntentRevision::value(session.startedAt, SyncedSessionState::ended));

  const PairingViewModel devices = model->state().pairedDevicesPresentation();
  EXPECT_EQ(devices.headline, "Waiting for iCloud");
  EXPECT_EQ(devices.detail, "Sign in to the same iCloud account on both devices.");
  EXPECT_TRUE(devices.devices.empty());
}

// ---- a model composed with a coordinator ----

TEST_F(AppModelSessionSyncTest, StartingAndEndingASessionPublishesTheActiveThenTheEndedIntent) {
  store(PersistedState::initial());
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(cloudTransport("mac"), kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  model->setSelectedMode(SessionMode::flexible);
  clock->advance(5);

  model->start();
  ASSERT_TRUE(model->state().activeSession);
  const BlockSession session = *model->state().activeSession;
  const std::int64_t activeRevision =
      SessionIntentRevision::value(session.startedAt, SyncedSessionState::active);
  const SyncedSessionIntent active{.sessionID = session.id,
                                   .profileID = kProfile,
                                   .mode = SyncedSessionMode::flexible,
                                   .startedAt = session.startedAt,
                                   .endsAt = session.endsAt,
                                   .revision = activeRevision,
                                   .state = SyncedSessionState::active,
                                   .sourceDeviceID = kMacID};
  EXPECT_EQ(intentInCloud(session.id), active);
  EXPECT_EQ(model->syncRevision(), activeRevision);
  EXPECT_EQ(model->lastSyncedSession(), session);

  clock->advance(60);
  model->endFlexible();
  ASSERT_FALSE(model->state().activeSession);
  SyncedSessionIntent ended = active;
  ended.state = SyncedSessionState::ended;
  ended.revision = SessionIntentRevision::value(session.startedAt, SyncedSessionState::ended);
  EXPECT_EQ(ended.revision, activeRevision + 1);
  EXPECT_EQ(intentInCloud(session.id), ended);
  EXPECT_EQ(model->syncRevision(), ended.revision);
  // The session is kept after its end, so its end can be told again.
  EXPECT_EQ(model->lastSyncedSession(), session);

  // The database saw the active version first, then the ended one, and nothing else of it.
  EXPECT_EQ(intentsInCloud(session.id), (std::vector{active, ended}));
}

TEST_F(AppModelSessionSyncTest, DevicesPresentationFollowsThePhonesAcknowledgement) {
  store(PersistedState::initial());
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(cloudTransport("mac"), kMacID);
  CrossDeviceSessionCoordinator onPhone(cloudTransport("phone"), kPhoneID);
  cloudTransport("phone")->publish(phone(clock->now()));

  const auto model = makeSyncedModel(coordinator);
  model->recover();
  EXPECT_EQ(model->state().pairingState, PairingState::paired);
  EXPECT_EQ(model->state().pairedDevices, std::vector{phone(kTestNow)});
  EXPECT_TRUE(model->state().pairedDeviceProtection.empty());
  EXPECT_EQ(model->state().pairedDevicesPresentation().headline, "Paired");

  model->setSelectedMode(SessionMode::strict);
  model->start();
  ASSERT_TRUE(model->state().activeSession);
  const BlockSession session = *model->state().activeSession;
  const DeviceProtectionStatus waiting =
      DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone);
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID), waiting);
  PairingViewModel devices = model->state().pairedDevicesPresentation();
  EXPECT_EQ(devices.headline, "Waiting for iPhone");
  EXPECT_EQ(devices.modeMessage, "Strict: apps stay blocked until the session ends.");

  // The phone takes the intent in and answers that it applied it.
  clock->advance(20);
  onPhone.refresh(clock->now());
  const std::optional<SyncedSessionIntent> received = onPhone.intent(session.id);
  ASSERT_TRUE(received);
  EXPECT_EQ(received->mode, SyncedSessionMode::strict);
  (void)onPhone.acknowledge(*received, EnforcementResult::applied, clock->now());

  clock->advance(1);
  model->heartbeat();
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::protectedUntil(session.endsAt));
  devices = model->state().pairedDevicesPresentation();
  EXPECT_EQ(devices.headline.rfind("Protected until ", 0), 0U) << devices.headline;
  EXPECT_EQ(devices.detail, "The iPhone confirmed that the selected apps are protected.");
  ASSERT_EQ(devices.devices.size(), 1U);
  EXPECT_EQ(devices.devices[0].statusText, devices.headline);
  EXPECT_EQ(devices.devices[0].lastSeenText, "Seen just now");

  // A strict session ends only at its time; the heartbeat ends it and tells the phone.
  clock->set(session.endsAt.advanced(1));
  model->heartbeat();
  ASSERT_FALSE(model->state().activeSession);
  EXPECT_EQ(intentInCloud(session.id)->state, SyncedSessionState::ended);
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::of(DeviceProtectionStatus::Case::expired));
  devices = model->state().pairedDevicesPresentation();
  EXPECT_EQ(devices.headline, "Ready");
  EXPECT_EQ(devices.detail, "The previous focus session has ended.");
  EXPECT_FALSE(devices.modeMessage);
}

TEST_F(AppModelSessionSyncTest, AnAnswerForAnEarlierSessionDoesNotProtectTheRunningOne) {
  store(PersistedState::initial());
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(cloudTransport("mac"), kMacID);
  CrossDeviceSessionCoordinator onPhone(cloudTransport("phone"), kPhoneID);
  cloudTransport("phone")->publish(phone(clock->now()));
  const auto model = makeSyncedModel(coordinator);
  model->recover();

  model->start();
  const BlockSession first = *model->state().activeSession;
  model->endFlexible();
  model->start();
  ASSERT_TRUE(model->state().activeSession);
  ASSERT_NE(model->state().activeSession->id, first.id);

  // The phone answers only the first session; the one running now is still unconfirmed.
  onPhone.refresh(clock->now());
  (void)onPhone.acknowledge(*onPhone.intent(first.id), EnforcementResult::applied, clock->now());
  model->heartbeat();
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone));
}

TEST_F(AppModelSessionSyncTest, RecoverTellsTheDevicesAboutTheSessionFoundRunningAtLaunch) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.activeSession = storedSession(news, kTestNow.advanced(-300), kTestNow.advanced(1200));
  store(state);
  auto transport = std::make_shared<RecordingPairingTransport>();
  PairingChangeBatch announced;
  announced.devices = {phone(kTestNow)};
  transport->batches.push_back(announced);
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);

  const auto model = makeSyncedModel(coordinator);
  model->recover();

  ASSERT_TRUE(model->state().activeSession);
  EXPECT_EQ(model->lastSyncedSession(), state.activeSession);
  ASSERT_FALSE(transport->publishedIntents.empty());
  for (const SyncedSessionIntent& intent : transport->publishedIntents) {
    EXPECT_EQ(intent.sessionID, state.activeSession->id);
    EXPECT_EQ(intent.state, SyncedSessionState::active);
    EXPECT_EQ(intent.profileID, AppModel::restrictionProfileID());
  }
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone));
}

TEST_F(AppModelSessionSyncTest, ASecondEndOfTheSameSessionPublishesTheSameIntentAgain) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  model->start();
  model->endFlexible();
  ASSERT_EQ(transport->publishedIntents.size(), 2U);

  model->engine().onSessionChanged(std::nullopt);

  ASSERT_EQ(transport->publishedIntents.size(), 3U);
  EXPECT_EQ(transport->publishedIntents[2], transport->publishedIntents[1]);
  EXPECT_EQ(transport->publishedIntents[2].state, SyncedSessionState::ended);
}

// ---- failures ----

TEST_F(AppModelSessionSyncTest, AFailedPublishIsNeitherShownNorRetried) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  PairingChangeBatch announced;
  announced.devices = {phone(kTestNow)};
  transport->batches.push_back(announced);
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  transport->publishFailure = std::make_exception_ptr(
      CloudPairingTransportError(CloudPairingTransportError::Case::offline));

  model->start();

  ASSERT_TRUE(model->state().activeSession);
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().pairingState, PairingState::paired);
  EXPECT_TRUE(transport->publishedIntents.empty());
  // The statuses are brought up to date after a failed publish as after a good one.
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone));

  transport->publishFailure = nullptr;
  model->heartbeat();
  EXPECT_TRUE(transport->publishedIntents.empty());
}

TEST_F(AppModelSessionSyncTest, AFailedRefreshShowsOfflineAndKeepsWhatWasKnown) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  PairingChangeBatch announced;
  announced.devices = {phone(kTestNow), otherMac(kTestNow)};
  transport->batches.push_back(announced);
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  model->start();
  ASSERT_EQ(model->state().pairingState, PairingState::paired);

  transport->fetchFailure = std::make_exception_ptr(
      CloudPairingTransportError(CloudPairingTransportError::Case::offline));
  model->heartbeat();

  EXPECT_EQ(model->state().pairingState, PairingState::offline);
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().pairedDevices, std::vector{phone(kTestNow)});
  EXPECT_EQ(model->state().pairedDeviceProtection.size(), 1U);
  EXPECT_EQ(model->state().pairedDevicesPresentation().headline,
            "Offline—will apply when connected");

  transport->fetchFailure = nullptr;
  model->heartbeat();
  EXPECT_EQ(model->state().pairingState, PairingState::paired);
}

// ---- what counts as a paired device ----

TEST_F(AppModelSessionSyncTest, OnlyIPhonesAreListedAndWatched) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  PairingChangeBatch announced;
  announced.devices = {otherMac(kTestNow), phone(kTestNow)};
  transport->batches.push_back(announced);
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator);
  model->recover();
  model->start();

  EXPECT_EQ(model->state().pairedDevices, std::vector{phone(kTestNow)});
  ASSERT_EQ(model->state().pairedDeviceProtection.size(), 1U);
  EXPECT_TRUE(model->state().pairedDeviceProtection.contains(kPhoneID));
}

TEST_F(AppModelSessionSyncTest, WithoutADeviceIDTheSessionStopsAtTheModel) {
  store(PersistedState::initial());
  auto transport = std::make_shared<RecordingPairingTransport>();
  PairingChangeBatch announced;
  announced.devices = {phone(kTestNow)};
  transport->batches.push_back(announced);
  auto coordinator = std::make_shared<CrossDeviceSessionCoordinator>(transport, kMacID);
  const auto model = makeSyncedModel(coordinator, std::nullopt);
  model->recover();

  model->start();
  ASSERT_TRUE(model->state().activeSession);
  EXPECT_EQ(model->lastSyncedSession(), model->state().activeSession);
  EXPECT_TRUE(transport->publishedIntents.empty());

  // Protection is still read for the session, and nothing is known of it on the other side.
  model->heartbeat();
  EXPECT_EQ(model->state().pairingState, PairingState::paired);
  EXPECT_EQ(model->state().pairedDeviceProtection.at(kPhoneID),
            DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone));
}

}  // namespace
}  // namespace testing
}  // namespace brindlet

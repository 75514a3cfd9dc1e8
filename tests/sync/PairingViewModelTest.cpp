#include <gtest/gtest.h>

#include "Builders.h"
#include "sync/PairingViewModel.h"

namespace brindlet {
namespace {

using Case = DeviceProtectionStatus::Case;
using testing::kTestNow;

const Calendar& calendar() {
  static const Calendar london("Europe/London", Calendar::kMonday, "en_GB");
  return london;
}

PairedDevice iPhone(std::string id, Instant lastSeenAt = kTestNow) {
  return {.id = id,
          .name = "iPhone " + id,
          .platform = FocusDevicePlatform::iOS,
          .lastSeenAt = lastSeenAt};
}

PairedDevice mac(std::string id) {
  return {.id = std::move(id),
          .name = "Mac",
          .platform = FocusDevicePlatform::macOS,
          .lastSeenAt = kTestNow};
}

// Inputs at kTestNow with every other argument at its default.
PairingViewInputs inputs(PairingState state, std::vector<PairedDevice> devices = {},
                         std::map<std::string, DeviceProtectionStatus> statuses = {}) {
  PairingViewInputs result;
  result.pairingState = state;
  result.devices = std::move(devices);
  result.protectionStatuses = std::move(statuses);
  result.now = kTestNow;
  return result;
}

PairingViewModel view(const PairingViewInputs& given) { return {given, calendar()}; }

PairingViewModel paired(std::vector<PairedDevice> devices,
                        std::map<std::string, DeviceProtectionStatus> statuses = {}) {
  return view(inputs(PairingState::paired, std::move(devices), std::move(statuses)));
}

std::string lastSeenAfter(double seconds) {
  return paired({iPhone("a", kTestNow.advanced(-seconds))}).devices.at(0).lastSeenText;
}

bool staleAfter(double seconds) {
  return paired({iPhone("a", kTestNow.advanced(-seconds))}).devices.at(0).isStale;
}

TEST(PairingViewModelTest, LastSeenTextGoesFromJustNowToMinutesToHoursWithoutDays) {
  EXPECT_EQ(lastSeenAfter(59.9), "Seen just now");
  EXPECT_EQ(lastSeenAfter(60), "Seen 1m ago");
  EXPECT_EQ(lastSeenAfter(3599), "Seen 59m ago");
  EXPECT_EQ(lastSeenAfter(3600), "Seen 1h ago");
  EXPECT_EQ(lastSeenAfter(90000), "Seen 25h ago");
}

TEST(PairingViewModelTest, DeviceSeenInTheFutureWasSeenJustNowAndIsNotStale) {
  EXPECT_EQ(lastSeenAfter(-600), "Seen just now");
  EXPECT_FALSE(staleAfter(-600));
}

TEST(PairingViewModelTest, DeviceTurnsStaleAtFiveMinutes) {
  EXPECT_FALSE(staleAfter(299.9));
  EXPECT_TRUE(staleAfter(300));
}

TEST(PairingViewModelTest, MissingAuthorizationOutranksNotPaired) {
  PairingViewInputs given = inputs(PairingState::paired);
  given.authorizationGranted = false;
  const PairingViewModel model = view(given);
  EXPECT_EQ(model.headline, "Authorization required");
  EXPECT_EQ(model.detail, "Allow Screen Time on this iPhone to protect selected apps.");
}

TEST(PairingViewModelTest, OnlyAMacKnownIsNotPairedWithNoRows) {
  const PairingViewModel model = paired({mac("mac-2")});
  EXPECT_EQ(model.headline, "Not paired");
  EXPECT_EQ(model.detail, "Open Tolvane on your iPhone using the same iCloud account.");
  EXPECT_TRUE(model.devices.empty());
}

TEST(PairingViewModelTest, PermissionDeniedWithOneSilentIPhoneReadsPaired) {
  const PairingViewModel model = view(inputs(PairingState::permissionDenied, {iPhone("a")}));
  EXPECT_EQ(model.headline, "Paired");
  EXPECT_EQ(model.detail, "This iPhone is ready for your next focus session.");
  EXPECT_EQ(model.devices.at(0).statusText, "Ready");
}

TEST(PairingViewModelTest, WaitingIPhoneOutweighsAProtectedOneAndEachRowShowsItsOwn) {
  const Instant until = Instant::fromUnix(1795260600.0);  // 11:30 in London
  const PairingViewModel model = paired(
      {iPhone("a"), iPhone("b")}, {{"a", DeviceProtectionStatus::protectedUntil(until)},
                                   {"b", DeviceProtectionStatus::of(Case::waitingForIPhone)}});
  EXPECT_EQ(model.headline, "Waiting for iPhone");
  EXPECT_EQ(model.detail, "The session is active on Mac and awaiting iPhone confirmation.");
  ASSERT_EQ(model.devices.size(), 2U);
  EXPECT_EQ(model.devices[0].statusText, "Protected until 11:30");
  EXPECT_EQ(model.devices[1].statusText, "Waiting for iPhone");
}

TEST(PairingViewModelTest, ProtectedOutranksExpired) {
  const Instant until = Instant::fromUnix(1795260600.0);
  const PairingViewModel model =
      paired({iPhone("a"), iPhone("b")}, {{"a", DeviceProtectionStatus::of(Case::expired)},
                                          {"b", DeviceProtectionStatus::protectedUntil(until)}});
  EXPECT_EQ(model.headline, "Protected until 11:30");
  EXPECT_EQ(model.detail, "The iPhone confirmed that the selected apps are protected.");
}

TEST(PairingViewModelTest, OnlyExpiredReadsReady) {
  const PairingViewModel model =
      paired({iPhone("a")}, {{"a", DeviceProtectionStatus::of(Case::expired)}});
  EXPECT_EQ(model.headline, "Ready");
  EXPECT_EQ(model.detail, "The previous focus session has ended.");
}

TEST(PairingViewModelTest, FailureWithoutCodeAsksToRetry) {
  const PairingViewModel model =
      paired({iPhone("a")}, {{"a", DeviceProtectionStatus::failed(std::nullopt)}});
  EXPECT_EQ(model.headline, "Protection needs attention");
  EXPECT_EQ(model.detail, "Open Tolvane on iPhone and retry.");
}

TEST(PairingViewModelTest, FailureWithCodeShowsTheCode) {
  const PairingViewModel model =
      paired({iPhone("a")}, {{"a", DeviceProtectionStatus::failed("shield-3")}});
  EXPECT_EQ(model.detail, "iPhone reported: shield-3");
}

TEST(PairingViewModelTest, FirstOfEqualPriorityDecides) {
  const PairingViewModel model = paired(
      {iPhone("a"), iPhone("b")}, {{"a", DeviceProtectionStatus::of(Case::entitlementMissing)},
                                   {"b", DeviceProtectionStatus::of(Case::authorizationRequired)}});
  EXPECT_EQ(model.headline, "Protection unavailable");
  EXPECT_EQ(model.detail, "This build is missing Apple Family Controls approval.");
  EXPECT_EQ(model.devices[1].statusText, "Authorization required");
}

TEST(PairingViewModelTest, DeviceWithNothingToReportDoesNotHideOneThatHas) {
  const PairingViewModel model =
      paired({iPhone("a"), iPhone("b")}, {{"b", DeviceProtectionStatus::of(Case::notPaired)}});
  EXPECT_EQ(model.headline, "Not paired");
  EXPECT_EQ(model.devices[0].statusText, "Ready");
}

TEST(PairingViewModelTest, StatusOfAMacTakesNoPartInTheHeadline) {
  const PairingViewModel model =
      paired({mac("m"), iPhone("a")}, {{"m", DeviceProtectionStatus::failed("x")}});
  EXPECT_EQ(model.headline, "Paired");
  ASSERT_EQ(model.devices.size(), 1U);
  EXPECT_EQ(model.devices[0].id, "a");
  EXPECT_EQ(model.devices[0].name, "iPhone a");
}

TEST(PairingViewModelTest, ProfileWaitingAndOfflineLinesComeInOrder) {
  PairingViewInputs noProfile = inputs(PairingState::offline);
  noProfile.profileSelected = false;
  EXPECT_EQ(view(noProfile).headline, "Choose apps to protect");
  EXPECT_EQ(view(noProfile).detail, "Your app choices stay private on this iPhone.");
  const PairingViewModel waiting = view(inputs(PairingState::waitingForICloud));
  EXPECT_EQ(waiting.headline, "Waiting for iCloud");
  EXPECT_EQ(waiting.detail, "Sign in to the same iCloud account on both devices.");
  const PairingViewModel offline =
      view(inputs(PairingState::offline, {iPhone("a")},
                  {{"a", DeviceProtectionStatus::of(Case::waitingForIPhone)}}));
  EXPECT_EQ(offline.headline, "Offline—will apply when connected");
  EXPECT_EQ(offline.detail, "Tolvane will retry without changing the Mac session.");
}

TEST(PairingViewModelTest, ModeMessageFollowsTheSessionMode) {
  PairingViewInputs given = inputs(PairingState::paired);
  EXPECT_EQ(view(given).modeMessage, std::nullopt);
  given.sessionMode = SyncedSessionMode::strict;
  EXPECT_EQ(view(given).modeMessage, "Strict: apps stay blocked until the session ends.");
  given.sessionMode = SyncedSessionMode::flexible;
  EXPECT_EQ(view(given).modeMessage, "Flexible: you can deliberately open an app from its shield.");
}

TEST(PairingViewModelTest, StaleDeviceThatConfirmedStillReadsProtected) {
  const Instant until = Instant::fromUnix(1795260600.0);
  const PairingViewModel model = paired({iPhone("a", kTestNow.advanced(-7200))},
                                        {{"a", DeviceProtectionStatus::protectedUntil(until)}});
  EXPECT_TRUE(model.devices[0].isStale);
  EXPECT_EQ(model.headline, "Protected until 11:30");
}

TEST(PairingViewModelTest, OtherRemainingStatusesHaveTheirTexts) {
  const PairingViewModel profile =
      paired({iPhone("a")}, {{"a", DeviceProtectionStatus::of(Case::profileMissing)}});
  EXPECT_EQ(profile.headline, "Choose apps to protect");
  EXPECT_EQ(profile.detail, "Open Tolvane on iPhone and choose apps to protect.");
  const PairingViewModel authorization =
      paired({iPhone("a")}, {{"a", DeviceProtectionStatus::of(Case::authorizationRequired)}});
  EXPECT_EQ(authorization.detail, "Open Tolvane on iPhone and allow Screen Time again.");
}

}  // namespace
}  // namespace brindlet

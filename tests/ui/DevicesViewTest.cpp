// The Devices screen: the pairing status card and the paired devices.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QColor>
#include <QSignalSpy>

#include "DevicesScreen.h"
#include "UiFixture.h"

namespace brindlet::testing {
namespace {

const QColor kOrange("#ec8a16");
const QColor kGreen("#2fa05a");
const QColor kSecondary("#6a7285");

PairedDevice iPhone(const std::string& id, const std::string& name, Instant lastSeenAt) {
  return PairedDevice{
      .id = id, .name = name, .platform = FocusDevicePlatform::iOS, .lastSeenAt = lastSeenAt};
}

class DevicesViewTest : public UiTest {
 protected:
  void openScreen() { click(item("destination.Devices")); }

  /// The shown state as a model with a way to other devices would publish it.
  [[nodiscard]] AppModelState paired(std::vector<PairedDevice> devices) const {
    AppModelState state = host->state();
    state.hasCrossDeviceCoordinator = true;
    state.pairingState = PairingState::paired;
    state.pairedDevices = std::move(devices);
    state.now = kTestNow;
    return state;
  }
  void show(const AppModelState& state) {
    dashboard->present(state);
    settle();
  }

  [[nodiscard]] QString textOf(const QString& name) const {
    QQuickItem* found = item(name);
    return found ? found->property("text").toString() : QString();
  }
  [[nodiscard]] QColor colourOf(const QString& name) const {
    return item(name)->property("color").value<QColor>();
  }
  [[nodiscard]] QString statusSymbol() const {
    return item("devicesStatusIcon")->property("symbol").toString();
  }
};

TEST_F(DevicesViewTest, WithoutACrossDeviceCoordinatorItWaitsForICloudAndShowsHowToPair) {
  launch();
  openScreen();
  EXPECT_TRUE(showsText("Devices"));
  EXPECT_TRUE(showsText(
      "See whether your iPhone confirmed protection. No app selections leave the phone."));
  EXPECT_EQ(textOf("devicesHeadline"), "Waiting for iCloud");
  EXPECT_EQ(textOf("devicesDetail"), "Sign in to the same iCloud account on both devices.");
  EXPECT_EQ(item("devicesModeMessage"), nullptr);
  EXPECT_EQ(statusSymbol(), "iphone.and.arrow.forward");
  EXPECT_TRUE(showsText("Pair your iPhone"));
  EXPECT_EQ(textOf("pairingSteps"),
            "1. Install and open Tolvane on iPhone.\n"
            "2. Use the same iCloud account as this Mac.\n"
            "3. Allow Screen Time and choose apps on the iPhone.");
  EXPECT_TRUE(buttonsIn(item("devicesView")).empty());
  screenshot("devices-empty");

  // Whatever the state says of pairing, a model without the way to other devices waits.
  AppModelState state = paired({});
  state.hasCrossDeviceCoordinator = false;
  show(state);
  EXPECT_EQ(textOf("devicesHeadline"), "Waiting for iCloud");
  EXPECT_NE(item("pairingHelp"), nullptr);
}

TEST_F(DevicesViewTest, AProtectedUntilHeadlineTakesTheShieldIcon) {
  launch();
  openScreen();
  AppModelState state = paired({iPhone("phone-1", "Ada's iPhone", kTestNow)});
  state.pairedDeviceProtection["phone-1"] =
      DeviceProtectionStatus::protectedUntil(kTestNow.advanced(3600));
  show(state);
  EXPECT_TRUE(textOf("devicesHeadline").startsWith("Protected until "));
  EXPECT_EQ(textOf("devicesDetail"), "The iPhone confirmed that the selected apps are protected.");
  EXPECT_EQ(statusSymbol(), "checkmark.shield.fill");
  EXPECT_EQ(item("pairingHelp"), nullptr);
  EXPECT_EQ(textOf("deviceCaption.phone-1"), textOf("devicesHeadline") + " · Seen just now");
}

TEST_F(DevicesViewTest, APairedPhoneWithNothingToReportReadsPairedWithTheCheckmark) {
  launch();
  openScreen();
  show(paired({iPhone("phone-1", "Ada's iPhone", kTestNow.advanced(-30))}));
  EXPECT_EQ(textOf("devicesHeadline"), "Paired");
  EXPECT_EQ(textOf("devicesDetail"), "This iPhone is ready for your next focus session.");
  EXPECT_EQ(statusSymbol(), "checkmark.circle.fill");
  EXPECT_EQ(textOf("deviceName.phone-1"), "Ada's iPhone");
  EXPECT_EQ(textOf("deviceCaption.phone-1"), "Ready · Seen just now");
  EXPECT_EQ(colourOf("deviceCaption.phone-1"), kSecondary);
  EXPECT_EQ(colourOf("deviceDot.phone-1"), kGreen);
  EXPECT_EQ(accessibleName(item("deviceDot.phone-1")), "Recently connected");
}

TEST_F(DevicesViewTest, AnyOtherHeadlineTakesThePhoneIcon) {
  launch();
  openScreen();
  AppModelState state = paired({iPhone("phone-1", "Ada's iPhone", kTestNow)});
  state.pairedDeviceProtection["phone-1"] =
      DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone);
  show(state);
  EXPECT_EQ(textOf("devicesHeadline"), "Waiting for iPhone");
  EXPECT_EQ(statusSymbol(), "iphone.and.arrow.forward");

  state.pairingState = PairingState::offline;
  show(state);
  EXPECT_EQ(textOf("devicesHeadline"), "Offline—will apply when connected");
  EXPECT_EQ(statusSymbol(), "iphone.and.arrow.forward");
}

TEST_F(DevicesViewTest, AStaleDeviceShowsOrangeInTheCaptionAndTheDot) {
  launch();
  openScreen();
  AppModelState state = paired({iPhone("phone-1", "Ada's iPhone", kTestNow.advanced(-20)),
                                iPhone("phone-2", "Work iPhone", kTestNow.advanced(-2 * 3600))});
  state.pairedDeviceProtection["phone-1"] =
      DeviceProtectionStatus::protectedUntil(kTestNow.advanced(1500));
  state.pairedDeviceProtection["phone-2"] =
      DeviceProtectionStatus::of(DeviceProtectionStatus::Case::waitingForIPhone);
  state.activeSession = BlockSession{.mode = SessionMode::strict,
                                     .startedAt = kTestNow.advanced(-60),
                                     .endsAt = kTestNow.advanced(1500)};
  show(state);

  EXPECT_EQ(textOf("devicesHeadline"), "Waiting for iPhone");
  EXPECT_EQ(textOf("devicesModeMessage"), "Strict: apps stay blocked until the session ends.");
  EXPECT_EQ(textOf("deviceCaption.phone-2"), "Waiting for iPhone · Seen 2h ago");
  EXPECT_EQ(colourOf("deviceCaption.phone-2"), kOrange);
  EXPECT_EQ(colourOf("deviceDot.phone-2"), kOrange);
  EXPECT_EQ(accessibleName(item("deviceDot.phone-2")), "Connection stale");

  EXPECT_TRUE(textOf("deviceCaption.phone-1").endsWith(" · Seen just now"));
  EXPECT_EQ(colourOf("deviceCaption.phone-1"), kSecondary);
  EXPECT_EQ(colourOf("deviceDot.phone-1"), kGreen);
  EXPECT_EQ(accessibleName(item("deviceDot.phone-1")), "Recently connected");

  // The cards keep the order the model gives.
  EXPECT_LT(item("deviceCard.phone-1")->mapToScene({0, 0}).y(),
            item("deviceCard.phone-2")->mapToScene({0, 0}).y());
  screenshot("devices-busy");
}

TEST_F(DevicesViewTest, TheSeenAgoLineFollowsTheClockOnTheSameCard) {
  launch();
  openScreen();
  AppModelState state = paired({iPhone("phone-1", "Ada's iPhone", kTestNow)});
  show(state);
  QQuickItem* card = item("deviceCard.phone-1");
  EXPECT_EQ(textOf("deviceCaption.phone-1"), "Ready · Seen just now");

  state.now = kTestNow.advanced(299);
  show(state);
  EXPECT_EQ(textOf("deviceCaption.phone-1"), "Ready · Seen 4m ago");
  EXPECT_EQ(colourOf("deviceDot.phone-1"), kGreen);

  state.now = kTestNow.advanced(300);
  show(state);
  EXPECT_EQ(textOf("deviceCaption.phone-1"), "Ready · Seen 5m ago");
  EXPECT_EQ(colourOf("deviceDot.phone-1"), kOrange);
  EXPECT_EQ(item("deviceCard.phone-1"), card);
}

TEST_F(DevicesViewTest, TheStatusCardIsOneElementForAssistiveTechnology) {
  launch();
  openScreen();
  AppModelState state = paired({iPhone("phone-1", "Ada's iPhone", kTestNow)});
  state.activeSession = BlockSession{
      .mode = SessionMode::flexible, .startedAt = kTestNow, .endsAt = kTestNow.advanced(1500)};
  show(state);
  EXPECT_EQ(accessibleName(item("devicesStatusCard")),
            "Paired. This iPhone is ready for your next focus session. Flexible: you can "
            "deliberately open an app from its shield.");
  // Its lines are not read again one by one.
  QAccessibleInterface* card = QAccessible::queryAccessibleInterface(item("devicesStatusCard"));
  ASSERT_NE(card, nullptr);
  EXPECT_EQ(card->childCount(), 0);
}

ui::DeviceRowData deviceRow(const QString& id, const QString& caption, bool stale = false) {
  return ui::DeviceRowData{
      .deviceId = id, .name = id + QStringLiteral(" phone"), .caption = caption, .isStale = stale};
}

TEST(PairedDeviceListModelTest, KeepsItsRowsConsistentThroughResetsAndChanges) {
  ui::PairedDeviceListModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setRows({deviceRow("a", "Ready · Seen just now"), deviceRow("b", "Ready · Seen 1h ago")});
  EXPECT_EQ(model.count(), 2);
  EXPECT_EQ(model.data(model.index(1), ui::PairedDeviceListModel::CaptionRole).toString(),
            "Ready · Seen 1h ago");
  model.setRows({deviceRow("b", "Ready · Seen 1h ago")});
  EXPECT_EQ(model.data(model.index(0), ui::PairedDeviceListModel::DeviceIdRole).toString(), "b");
  model.setRows({});
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(PairedDeviceListModelTest, TheSameDevicesInTheSameOrderOnlyChangeTheRowsThatDiffer) {
  ui::PairedDeviceListModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setRows({deviceRow("a", "Ready · Seen just now"), deviceRow("b", "Ready · Seen 4m ago")});
  QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
  QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
  model.setRows(
      {deviceRow("a", "Ready · Seen just now"), deviceRow("b", "Ready · Seen 5m ago", true)});
  EXPECT_EQ(resets.count(), 0);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex().row(), 1);
  EXPECT_TRUE(model.data(model.index(1), ui::PairedDeviceListModel::IsStaleRole).toBool());
}

}  // namespace
}  // namespace brindlet::testing

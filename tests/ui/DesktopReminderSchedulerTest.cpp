// The desktop notification scheduler against a private session bus: a dbus-daemon that the test
// starts, and a stand-in notification service on it that records every call.

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QProcess>
#include <QStringList>
#include <QTest>
#include <QVariantMap>
#include <memory>

#include "DesktopReminderScheduler.h"
#include "ManualClock.h"
#include "NotificationSender.h"
#include "TempDir.h"
#include "reminders/ReminderPlanner.h"

namespace brindlet::testing {

/// Stands in for the desktop's notification service and keeps the summary of every Notify.
class RecordingNotificationService : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  QStringList summaries;
  QStringList icons;
  QStringList desktopEntries;

 public slots:
  uint Notify(const QString&, uint, const QString& icon, const QString& summary, const QString&,
              const QStringList&, const QVariantMap& hints, int) {
    summaries << summary;
    icons << icon;
    desktopEntries << hints.value(QStringLiteral("desktop-entry")).toString();
    return static_cast<uint>(summaries.size());
  }
};

namespace {

const Uuid kTask = Uuid::fromLiteral("B0000000-0000-4000-8000-000000000001");
const Uuid kOtherTask = Uuid::fromLiteral("B0000000-0000-4000-8000-000000000002");

ReminderRequest request(const Uuid& task, ReminderKind kind, Instant when, std::string title) {
  return ReminderRequest{.id = ReminderPlanner::identifier(task, kind),
                         .taskID = task,
                         .kind = kind,
                         .fireDate = when,
                         .title = std::move(title),
                         .body = "It is time."};
}

class DesktopReminderSchedulerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    writeBytes(folder / "bus.conf", R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=)" + folder.path().string() +
                                        R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
    daemon.start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--nofork"), QStringLiteral("--print-address=1"),
                  QStringLiteral("--config-file=") +
                      QString::fromStdString((folder / "bus.conf").string())});
    ASSERT_TRUE(daemon.waitForStarted(5000));
    ASSERT_TRUE(daemon.waitForReadyRead(5000));
    address = QString::fromUtf8(daemon.readLine()).trimmed();
    ASSERT_FALSE(address.isEmpty());
  }

  void TearDown() override {
    QDBusConnection::disconnectFromBus(QStringLiteral("stand-in"));
    QDBusConnection::disconnectFromBus(QStringLiteral("brindlet"));
    daemon.kill();
    daemon.waitForFinished(5000);
  }

  void startStandIn() {
    QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("stand-in"));
    ASSERT_TRUE(bus.isConnected());
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &service,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
  }

  std::unique_ptr<ui::DesktopReminderScheduler> makeScheduler() {
    return std::make_unique<ui::DesktopReminderScheduler>(
        folder / "Brindlet" / "reminders.json",
        std::make_shared<ui::DBusNotificationSender>(
            [this] { return QDBusConnection::connectToBus(address, QStringLiteral("brindlet")); }),
        clock);
  }

  /// Waits for the stand-in to have received `count` calls; the calls cross the bus daemon.
  bool received(int count) {
    return QTest::qWaitFor([&] { return service.summaries.size() >= count; }, 3000) &&
           service.summaries.size() == count;
  }

  TempDir folder;
  QProcess daemon;
  QString address;
  RecordingNotificationService service;
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
};

TEST_F(DesktopReminderSchedulerTest, ARequestThatFellDueWhileClosedFiresOnceAtTheNextStart) {
  startStandIn();
  {
    const auto before = makeScheduler();
    before->schedule({request(kTask, ReminderKind::start, kTestNow.advanced(60), "Missed call")});
    QDBusConnection::disconnectFromBus(QStringLiteral("brindlet"));
  }
  clock->advance(3600);
  const auto after = makeScheduler();
  after->start();
  EXPECT_TRUE(received(1));
  EXPECT_EQ(service.summaries, QStringList{"Missed call"});
  EXPECT_TRUE(after->pendingRequests().empty());

  const auto again = makeScheduler();
  again->start();
  EXPECT_FALSE(QTest::qWaitFor([&] { return service.summaries.size() > 1; }, 200));
}

TEST_F(DesktopReminderSchedulerTest, ANotificationCarriesTheApplicationIdAsIconAndDesktopEntry) {
  QGuiApplication::setDesktopFileName(QStringLiteral("org.brindlet.Brindlet"));
  startStandIn();
  const auto scheduler = makeScheduler();
  scheduler->schedule({request(kTask, ReminderKind::start, kTestNow.advanced(-1), "Now")});
  scheduler->start();
  QGuiApplication::setDesktopFileName({});
  ASSERT_TRUE(received(1));
  EXPECT_EQ(service.icons, QStringList{"org.brindlet.Brindlet"});
  EXPECT_EQ(service.desktopEntries, QStringList{"org.brindlet.Brindlet"});
}

TEST_F(DesktopReminderSchedulerTest, ARequestDueShortlyFiresOnceAtItsTime) {
  startStandIn();
  const auto scheduler = makeScheduler();
  scheduler->start();
  scheduler->schedule({request(kTask, ReminderKind::start, kTestNow.advanced(45), "Stand-up")});
  QCoreApplication::processEvents();
  ASSERT_TRUE(scheduler->nextWake().has_value());
  EXPECT_EQ(*scheduler->nextWake(), std::chrono::seconds(45));

  scheduler->fireDue();
  EXPECT_FALSE(QTest::qWaitFor([&] { return !service.summaries.isEmpty(); }, 100));

  clock->advance(45);
  scheduler->fireDue();
  EXPECT_TRUE(received(1));
  scheduler->fireDue();
  EXPECT_TRUE(received(1));
  EXPECT_FALSE(scheduler->nextWake().has_value());
}

TEST_F(DesktopReminderSchedulerTest, ACancelledRequestNeverFires) {
  startStandIn();
  const auto scheduler = makeScheduler();
  scheduler->schedule({request(kTask, ReminderKind::start, kTestNow.advanced(30), "Cancelled"),
                       request(kOtherTask, ReminderKind::overdue, kTestNow.advanced(30), "Kept")});
  scheduler->cancel(kTask);
  clock->advance(60);
  scheduler->fireDue();
  EXPECT_TRUE(received(1));
  EXPECT_EQ(service.summaries, QStringList{"Kept"});
}

TEST_F(DesktopReminderSchedulerTest, TheBusIsOpenedOnceAndOnlyWhenFirstNeeded) {
  startStandIn();
  int opened = 0;
  ui::DesktopReminderScheduler scheduler(
      folder / "Brindlet" / "reminders.json", std::make_shared<ui::DBusNotificationSender>([&] {
        ++opened;
        return QDBusConnection::connectToBus(address, QStringLiteral("brindlet"));
      }),
      clock);
  scheduler.schedule({request(kTask, ReminderKind::start, kTestNow.advanced(30), "Later")});
  scheduler.start();
  EXPECT_EQ(opened, 0);

  EXPECT_EQ(scheduler.authorizationStatus(), ReminderAuthorization::authorized);
  clock->advance(60);
  scheduler.fireDue();
  EXPECT_TRUE(received(1));
  EXPECT_EQ(opened, 1);
}

TEST_F(DesktopReminderSchedulerTest, WithANotificationServiceAuthorisationIsAuthorized) {
  startStandIn();
  EXPECT_EQ(makeScheduler()->authorizationStatus(), ReminderAuthorization::authorized);
}

TEST_F(DesktopReminderSchedulerTest, WithoutANotificationServiceAuthorisationIsDenied) {
  EXPECT_EQ(makeScheduler()->authorizationStatus(), ReminderAuthorization::denied);
}

TEST(DesktopReminderSchedulerWithoutBusTest, WithoutASessionBusAuthorisationIsDenied) {
  TempDir folder;
  ui::DesktopReminderScheduler scheduler(
      folder / "reminders.json", std::make_shared<ui::DBusNotificationSender>([] {
        return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"), "none");
      }),
      std::make_shared<ManualClock>());
  EXPECT_EQ(scheduler.authorizationStatus(), ReminderAuthorization::denied);
}

}  // namespace
}  // namespace brindlet::testing

#include "DesktopReminderSchedulerTest.moc"

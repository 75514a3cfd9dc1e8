// The desktop application: the live model on its own thread, the main window and the tray item.

#include <QtQml/qqmlextensionplugin.h>

#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <memory>

#include "ControlsStyle.h"
#include "Dashboard.h"
#include "DesktopReminderScheduler.h"
#include "MainWindowLoad.h"
#include "MenuBarItem.h"
#include "ModelHost.h"
#include "NotificationSender.h"
#include "StartupWarmUp.h"
#include "app/AppModel.h"
#include "app/PlatformFolders.h"
#include "support/Clock.h"

Q_IMPORT_QML_PLUGIN(BrindletPlugin)

int main(int argc, char* argv[]) {
  const brindlet::ui::StartupWarmUp warmUp;
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Brindlet"));
  QApplication::setDesktopFileName(QStringLiteral(BRINDLET_APP_ID));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/" BRINDLET_APP_ID ".svg")));
  brindlet::ui::chooseControlsStyle();

  using namespace brindlet;
  const auto clock = std::make_shared<SystemClock>();
  const auto scheduler = std::make_shared<ui::DesktopReminderScheduler>(
      PlatformFolders::current().dataFolder() / "reminders.json",
      std::make_shared<ui::DBusNotificationSender>([] { return QDBusConnection::sessionBus(); }),
      clock);
  scheduler->start();

  ui::ModelHost host([scheduler, clock] { return AppModel::live(scheduler, clock); });
  // The window is about to be shown: its start-up pass runs while the window loads, so that the
  // first frame already shows the plan.
  host.setWindowShown(true);
  ui::Dashboard dashboard(host, clock);
  ui::MenuBarItem menuBar(host);

  QQmlApplicationEngine engine;
  // A state the model has published meanwhile is built into the window as it loads, rather than
  // changing it after.
  host.deliverPublished();
  QQuickWindow* window = ui::loadMainWindow(engine);
  if (window == nullptr) return 1;
  // The model has mostly been composed and recovered while the window loaded; what remains is
  // waited for, so that the first frame shows the plan. A disk that holds the start-up pass up,
  // as a stalled sync of the day's backup can, delays the window only this long; the plan follows.
  host.settle(ui::kModelPatienceAtStart);

  // Asking the desktop for a tray and making the item's menu would hold the first frame up.
  ui::afterFirstFrame(*window, [&menuBar] {
    // With a tray item the app keeps running when the window closes, and the item reopens it.
    QApplication::setQuitOnLastWindowClosed(!menuBar.show());
  });
  QObject::connect(&menuBar, &ui::MenuBarItem::openRequested, window, [window] {
    window->show();
    window->raise();
    window->requestActivate();
  });

  return QApplication::exec();
}

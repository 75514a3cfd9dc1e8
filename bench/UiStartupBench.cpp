// Time to the first frame and resident memory of the main window, against a bare Qt Quick
// window, and the processor time the app takes while idle with a running task.
//
//   ui_startup_bench bare         a window with nothing in it
//   ui_startup_bench controls     a window of stock buttons, text and a text field
//   ui_startup_bench file PATH    any QML file that opens a window, to try a variant
//   ui_startup_bench app          the main window over a plan of five tasks
//   ui_startup_bench idle SECONDS the main window with a running task, left alone
//
// Each run is one process, so that the memory figures compare; scripts/measure-ui runs all three.
// The model works in a temporary folder over a hosts file of its own; nothing of the machine's
// is read or changed.

#include <QtQml/qqmlextensionplugin.h>
#include <sys/resource.h>

#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "ControlsStyle.h"
#include "Dashboard.h"
#include "DesktopReminderScheduler.h"
#include "MenuBarItem.h"
#include "ModelHost.h"
#include "NotificationSender.h"
#include "StartupWarmUp.h"
#include "app/AppModel.h"
#include "app/PlatformFolders.h"
#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "records/FocusTask.h"
#include "support/Clock.h"

Q_IMPORT_QML_PLUGIN(BrindletPlugin)

namespace {

using namespace brindlet;

// Nothing here runs a task with blocking, so the runner is never asked.
class UnusedRunner : public PrivilegedCommandRunning {
 public:
  void replace(const std::filesystem::path&, const std::filesystem::path&) override {}
  void refreshDNS() override {}
};

// A second yardstick: a window of stock controls and text, with none of the app's own parts.
constexpr const char* kControlsWindow = R"(
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
ApplicationWindow {
    width: 1040; height: 780; visible: true
    RowLayout {
        anchors.fill: parent
        ColumnLayout { Repeater { model: 6; Button { text: "Destination " + index } } }
        ColumnLayout {
            Repeater { model: 12; Text { text: "A line of text " + index } }
            TextField { placeholderText: "Add a task" }
        }
    }
})";

long residentKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
  }
  return -1;
}

double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// The plan the app opens: five tasks for today, written before the clock starts, since writing
// it is the bench's preparation and not the app's start-up.
PlatformFolders writePlan(const std::filesystem::path& folder) {
  const PlatformFolders folders{.applicationSupport = folder / "support",
                                .documents = folder / "documents"};
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "hosts") << "127.0.0.1 localhost\n";
  const SystemClock clock;
  const LocalDay today(clock.now(), Calendar::current());
  PersistedState state = PersistedState::initial();
  for (int i = 0; i < 5; ++i) {
    state.tasks.emplace_back("Task " + std::to_string(i + 1), clock.now(),
                             FocusTask::Fields{.plannedDay = today, .estimatedMinutes = 30});
  }
  LocalStore(folders.stateFile()).save(state);
  return folders;
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::string mode = argc > 1 ? argv[1] : "app";
  const int idleSeconds = mode == "idle" && argc > 2 ? std::stoi(argv[2]) : 60;
  const bool runsApp = mode == "app" || mode == "idle";
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("brindlet-bench-" + std::to_string(getpid()));
  const PlatformFolders folders = runsApp ? writePlan(folder) : PlatformFolders{};

  QElapsedTimer sinceStart;
  sinceStart.start();
  // As the app does: fonts and date formats are readied beside the start-up.
  std::jthread warmUp;
  if (runsApp) warmUp = ui::startStartupWarmUp();
  QApplication app(argc, argv);
  ui::chooseControlsStyle();

  std::unique_ptr<ui::ModelHost> host;
  std::unique_ptr<ui::Dashboard> dashboard;
  std::unique_ptr<ui::MenuBarItem> menuBar;
  std::shared_ptr<ui::DesktopReminderScheduler> scheduler;
  std::unique_ptr<QQmlApplicationEngine> engine;

  if (mode == "bare") {
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->loadData("import QtQuick\nWindow { width: 1040; height: 780; visible: true }");
  } else if (mode == "controls") {
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->loadData(kControlsWindow);
  } else if (mode == "file" && argc > 2) {
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->load(QString::fromLocal8Bit(argv[2]));
  } else {
    const auto clock = std::make_shared<SystemClock>();
    scheduler = std::make_shared<ui::DesktopReminderScheduler>(
        folders.dataFolder() / "reminders.json", std::make_shared<ui::DBusNotificationSender>([] {
          return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"),
                                               QStringLiteral("none"));
        }),
        clock);
    // As the app does: the model is composed and recovered on its own thread while the engine
    // is made and the window loads.
    host = std::make_unique<ui::ModelHost>([folders, folder, scheduler, clock] {
      return AppModel::compose(AppModel::Composition{
          .folders = folders,
          .hostsPath = folder / "hosts",
          .runner = std::make_shared<UnusedRunner>(),
          .scheduler = scheduler,
          .clock = clock,
          .calendar = Calendar::current(),
      });
    });
    host->setWindowShown(true);
    dashboard = std::make_unique<ui::Dashboard>(*host, clock);
    menuBar = std::make_unique<ui::MenuBarItem>(*host);
    engine = std::make_unique<QQmlApplicationEngine>();
    host->deliverPublished();
    engine->load(QUrl(QStringLiteral("qrc:/Brindlet/Main.qml")));
    host->settle();
  }
  if (engine->rootObjects().isEmpty()) return 1;
  auto* window = qobject_cast<QQuickWindow*>(engine->rootObjects().constFirst());

  // The first frame is stamped the moment it is out; what follows waits for the event loop.
  // The app's first frame counts only with the plan in it: the rows of today's queue.
  qint64 firstFrame = -1;
  int rowsInFirstFrame = 0;
  QObject::connect(window, &QQuickWindow::frameSwapped, &app, [&] {
    if (firstFrame >= 0) return;
    firstFrame = sinceStart.elapsed();
    if (dashboard) rowsInFirstFrame = dashboard->queue()->rowCount();
    QTimer::singleShot(0, &app, [&] {
      if (mode != "idle") {
        // Memory settles once the first frame is out and pending work is done.
        QTimer::singleShot(500, &app, [&] {
          std::printf("%s first_frame_ms=%lld rss_kb=%ld queue_rows=%d\n", mode.c_str(),
                      static_cast<long long>(firstFrame), residentKilobytes(), rowsInFirstFrame);
          QCoreApplication::quit();
        });
        return;
      }
      dashboard->startCardTask();
      QTimer::singleShot(2000, &app, [&] {
        const double before = cpuSeconds();
        QTimer::singleShot(idleSeconds * 1000, &app, [&, before] {
          const double used = cpuSeconds() - before;
          std::printf("idle seconds=%d cpu_s=%.3f share_of_core=%.3f%% task=\"%s\"\n", idleSeconds,
                      used, 100.0 * used / idleSeconds, qPrintable(dashboard->cardLabel()));
          QCoreApplication::quit();
        });
      });
    });
  });

  const int result = QApplication::exec();
  engine->clearComponentCache();
  host.reset();
  std::filesystem::remove_all(folder);
  return result;
}

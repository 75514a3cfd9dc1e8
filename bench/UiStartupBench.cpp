// Time to the first frame and resident memory of the main window, and the processor time the
// app takes while idle with a running task. scripts/measure-ui sets them against the yardsticks
// of ui_yardstick_window.
//
//   ui_startup_bench prepare FOLDER      writes a plan of five tasks for today into FOLDER
//   ui_startup_bench app FOLDER          the main window over the plan in FOLDER
//   ui_startup_bench idle FOLDER SECONDS the main window with a running task, left alone
//   ui_startup_bench file PATH           any QML file that opens a window, to try a variant
//
// Each run is one process, so that the memory figures compare. The model works in FOLDER over a
// hosts file of its own there; nothing of the machine's is read or changed.

#include <QtQml/qqmlextensionplugin.h>
#include <sys/resource.h>

#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "ControlsStyle.h"
#include "Dashboard.h"
#include "DesktopReminderScheduler.h"
#include "LaunchClock.h"
#include "MainWindowLoad.h"
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

constexpr int kPlannedTasks = 5;

double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// The queue's rows the window shows: a first frame without them, such as one whose screen failed
// to load, would time nothing worth timing.
int rowsOnScreen(const QQuickItem& item) {
  if (!item.isVisible()) return 0;
  if (item.objectName().startsWith(QStringLiteral("taskRow."))) return 1;
  int rows = 0;
  for (const QQuickItem* child : item.childItems()) rows += rowsOnScreen(*child);
  return rows;
}

PlatformFolders foldersIn(const std::filesystem::path& folder) {
  return PlatformFolders{.applicationSupport = folder / "support",
                         .documents = folder / "documents"};
}

// The plan the app opens: five tasks for today, with a hosts file of its own. Written by a
// process of its own before the measured one starts, so that the app starts as cold as it would.
int writePlan(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "hosts") << "127.0.0.1 localhost\n";
  const SystemClock clock;
  const LocalDay today(clock.now(), Calendar::current());
  PersistedState state = PersistedState::initial();
  for (int i = 0; i < kPlannedTasks; ++i) {
    state.tasks.emplace_back("Task " + std::to_string(i + 1), clock.now(),
                             FocusTask::Fields{.plannedDay = today, .estimatedMinutes = 30});
  }
  LocalStore(foldersIn(folder).stateFile()).save(state);
  return 0;
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::string mode = argc > 1 ? argv[1] : "";
  const std::filesystem::path folder = argc > 2 ? argv[2] : "";
  if (mode == "prepare" && !folder.empty()) return writePlan(folder);
  if ((mode != "app" && mode != "idle" && mode != "file") || folder.empty()) {
    std::fprintf(stderr, "usage: ui_startup_bench prepare|app|idle FOLDER [SECONDS] | file PATH\n");
    return 2;
  }
  const int idleSeconds = mode == "idle" && argc > 3 ? std::stoi(argv[3]) : 60;
  const bool runsApp = mode != "file";
  const PlatformFolders folders = foldersIn(folder);

  QElapsedTimer sinceStart;
  sinceStart.start();
  // As the app does: the font configuration is loaded beside the start-up.
  std::optional<ui::StartupWarmUp> warmUp;
  if (runsApp) warmUp.emplace();
  QApplication app(argc, argv);
  ui::chooseControlsStyle();

  std::unique_ptr<ui::ModelHost> host;
  std::unique_ptr<ui::Dashboard> dashboard;
  std::unique_ptr<ui::MenuBarItem> menuBar;
  std::shared_ptr<ui::DesktopReminderScheduler> scheduler;
  std::unique_ptr<QQmlApplicationEngine> engine;
  QQuickWindow* window = nullptr;

  if (mode == "file") {
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->load(QString::fromStdString(folder.string()));
    if (!engine->rootObjects().isEmpty()) {
      window = qobject_cast<QQuickWindow*>(engine->rootObjects().constFirst());
    }
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
    window = ui::loadMainWindow(*engine);
    host->settle(ui::kModelPatienceAtStart);
    if (window != nullptr) ui::afterFirstFrame(*window, [&menuBar] { (void)menuBar->show(); });
  }
  if (window == nullptr) return 1;

  // The first frame is stamped the moment it is out; what follows waits for the event loop.
  // The app's first frame counts only with the plan in it: the rows of today's queue.
  double firstFrame = -1;
  double sinceLaunch = -1;
  int rowsInFirstFrame = 0;
  QObject::connect(window, &QQuickWindow::frameSwapped, &app, [&] {
    if (firstFrame >= 0) return;
    firstFrame = static_cast<double>(sinceStart.nsecsElapsed()) / 1e6;
    sinceLaunch = bench::millisecondsSinceLaunch();
    if (dashboard) rowsInFirstFrame = rowsOnScreen(*window->contentItem());
    QTimer::singleShot(0, &app, [&] {
      if (dashboard && rowsInFirstFrame != kPlannedTasks) {
        std::fprintf(stderr, "the first frame shows %d of the plan's %d rows\n", rowsInFirstFrame,
                     kPlannedTasks);
        QCoreApplication::exit(1);
        return;
      }
      if (mode != "idle") {
        // Memory settles once the first frame is out and pending work is done.
        QTimer::singleShot(500, &app, [&] {
          std::printf("%s first_frame_ms=%.1f from_launch_ms=%.1f rss_kb=%ld queue_rows=%d\n",
                      mode.c_str(), firstFrame, sinceLaunch, bench::residentKilobytes(),
                      rowsInFirstFrame);
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
  return result;
}

// The yardsticks that the desktop app's start-up is measured against, each a program of its own
// that links only Qt Quick, as any Qt Quick program would:
//
//   ui_yardstick_window bare      a window with nothing in it
//   ui_yardstick_window controls  a window of stock buttons, text and a text field
//
// Prints the time to the first frame, from main and from the launch that scripts/measure-ui
// records, and the resident memory once the frame is out.

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>
#include <cstdio>
#include <string>

#include "LaunchClock.h"

namespace {

constexpr const char* kBareWindow =
    "import QtQuick\nWindow { width: 1040; height: 780; visible: true }";

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

}  // namespace

int main(int argc, char* argv[]) {
  QElapsedTimer sinceMain;
  sinceMain.start();
  const std::string mode = argc > 1 ? argv[1] : "bare";
  QGuiApplication app(argc, argv);
  qputenv("QT_QUICK_CONTROLS_STYLE", QByteArrayLiteral("Basic"));
  QQmlApplicationEngine engine;
  engine.loadData(mode == "controls" ? kControlsWindow : kBareWindow);
  if (engine.rootObjects().isEmpty()) return 1;
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());

  double firstFrame = -1;
  double sinceLaunch = -1;
  QObject::connect(window, &QQuickWindow::frameSwapped, &app, [&] {
    if (firstFrame >= 0) return;
    firstFrame = static_cast<double>(sinceMain.nsecsElapsed()) / 1e6;
    sinceLaunch = brindlet::bench::millisecondsSinceLaunch();
    // Memory settles once the first frame is out and pending work is done.
    QTimer::singleShot(500, &app, [&] {
      std::printf("%s first_frame_ms=%.1f from_launch_ms=%.1f rss_kb=%ld\n", mode.c_str(),
                  firstFrame, sinceLaunch, brindlet::bench::residentKilobytes());
      QCoreApplication::quit();
    });
  });
  return QGuiApplication::exec();
}

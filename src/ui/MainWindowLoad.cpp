#include "MainWindowLoad.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickWindow>
#include <QTimer>
#include <QUrl>
#include <array>
#include <memory>
#include <utility>

namespace brindlet::ui {
namespace {

constexpr std::array kOpeningScreenTextStyles{
    TextStyle{11, QFont::Bold},     TextStyle{12, QFont::Normal}, TextStyle{14, QFont::Normal},
    TextStyle{14, QFont::DemiBold}, TextStyle{17, QFont::Bold},   TextStyle{20, QFont::Bold},
    TextStyle{28, QFont::Bold},
};

void readyFont(const TextStyle& style) {
  QFont font = QGuiApplication::font();
  font.setPixelSize(style.pixelSize);
  font.setWeight(style.weight);
  // Measuring a text loads the font's engine into this thread's cache, where the window's texts
  // find it.
  (void)QFontMetricsF(font).horizontalAdvance(QStringLiteral("Brindlet"));
}

}  // namespace

std::span<const TextStyle> openingScreenTextStyles() { return kOpeningScreenTextStyles; }

QQuickWindow* loadMainWindow(QQmlApplicationEngine& engine) {
  const QUrl mainWindow(QStringLiteral("qrc:/Brindlet/Main.qml"));
  // Starts the loader thread on the window's files; the load below waits for what is left.
  const QQmlComponent reading(&engine, mainWindow, QQmlComponent::Asynchronous);
  for (const TextStyle& style : kOpeningScreenTextStyles) readyFont(style);
  engine.load(mainWindow);
  if (engine.rootObjects().isEmpty()) return nullptr;
  return qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
}

void afterFirstFrame(QQuickWindow& window, std::function<void()> then,
                     std::chrono::milliseconds patience) {
  // Whichever comes first, the frame or the end of patience, runs `then`; the other finds it gone.
  auto pending = std::make_shared<std::function<void()>>(std::move(then));
  const auto runOnce = [pending] {
    if (*pending) std::exchange(*pending, nullptr)();
  };
  QObject::connect(
      &window, &QQuickWindow::frameSwapped, &window, runOnce,
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  QTimer::singleShot(patience, &window, runOnce);
}

}  // namespace brindlet::ui

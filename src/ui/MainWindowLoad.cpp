#include "MainWindowLoad.h"

#include <QCoreApplication>
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

#include "FontConfiguration.h"
#include "SymbolIcon.h"
#include "support/Calendar.h"
#include "support/Clock.h"
#include "support/DateText.h"

namespace brindlet::ui {
namespace {

constexpr std::array kOpeningScreenTextStyles{
    TextStyle{11, QFont::Bold},     TextStyle{12, QFont::Normal}, TextStyle{14, QFont::Normal},
    TextStyle{14, QFont::DemiBold}, TextStyle{17, QFont::Bold},   TextStyle{20, QFont::Bold},
    TextStyle{28, QFont::Bold},
};

// The letters, digits and signs that titles, dates and durations are mostly written in.
constexpr QStringView kCommonCharacters =
    u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ,.:;-()'&/+%";

void readyFont(const TextStyle& style) {
  QFont font = QGuiApplication::font();
  font.setPixelSize(style.pixelSize);
  font.setWeight(style.weight);
  // Measuring a text loads the font's engine into this thread's cache, where the window's texts
  // find it, together with the measures of its characters: laying the texts out then looks them
  // up instead of loading each glyph.
  (void)QFontMetricsF(font).horizontalAdvance(kCommonCharacters.toString());
}

void readyDateFormats() {
  const Calendar calendar = Calendar::current();
  const Instant now = SystemClock().now();
  for (const std::u16string_view skeleton : {kLongDaySkeleton, kShortDaySkeleton}) {
    (void)dateText(now, calendar, skeleton);
  }
}

// The loader thread reports through the event loop: these handle what it has posted, the first
// without waiting for more.
bool stillReading(const QQmlComponent& component) {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  return component.isLoading();
}

void waitUntilRead(const QQmlComponent& component) {
  while (component.isLoading()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::WaitForMoreEvents);
  }
}

}  // namespace

std::span<const TextStyle> openingScreenTextStyles() { return kOpeningScreenTextStyles; }

void readyForOpeningScreen(const std::function<bool()>& stillReading) {
  for (const TextStyle& style : kOpeningScreenTextStyles) readyFont(style);
  if (!stillReading()) return;
  readyDateFormats();
  SymbolIcon::drawBundled(stillReading);
}

QQuickWindow* loadMainWindow(QQmlApplicationEngine& engine) {
  const QUrl mainWindow(QStringLiteral("qrc:/Brindlet/Main.qml"));
  // Starts the loader thread on the window's files while this thread readies the opening screen.
  const QQmlComponent reading(&engine, mainWindow, QQmlComponent::Asynchronous);
  readyFontConfiguration(TextLaidOut::maybe);
  readyForOpeningScreen([&reading] { return stillReading(reading); });
  waitUntilRead(reading);
  // The window's objects are made while the loader thread reads the opening screen's files.
  // Asked for together with the window's own, they would be read in turn with them, and the
  // window could start on its objects only once both were read.
  const QQmlComponent readingOpeningScreen(
      &engine, QUrl(QStringLiteral("qrc:/Brindlet/TodayView.qml")), QQmlComponent::Asynchronous);
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

#pragma once

#include <QFont>
#include <chrono>
#include <functional>
#include <span>

class QQmlApplicationEngine;
class QQuickWindow;

namespace brindlet::ui {

/// A font the window's texts are set in: the app's family at a pixel size and weight.
struct TextStyle {
  int pixelSize = 0;
  QFont::Weight weight = QFont::Normal;

  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// The styles of every text on the screen the window opens on, Today: the type scale's sizes in
/// the weights that screen and the sidebar set them in.
[[nodiscard]] std::span<const TextStyle> openingScreenTextStyles();

/// Readies what the opening screen needs, on the GUI thread while the loader thread reads the
/// window's files: a font is readied per thread, so no other thread can do this ahead, and another
/// thread of work would take a processor from the start itself. First the opening screen's fonts,
/// which it would otherwise load one by one as it makes the texts; then, one step at a time for as
/// long as `stillReading` says the files are still being read, the date formats of the user's
/// calendar and the bundled icons.
void readyForOpeningScreen(const std::function<bool()>& stillReading);

/// How long the window waits at start for the model's start-up pass before it shows without it:
/// many times what composing and recovering a plan of years takes.
inline constexpr std::chrono::milliseconds kModelPatienceAtStart{250};

/// Loads the main window into `engine` and returns it, or null when it failed to load (the engine
/// has reported why). While the engine's loader thread reads the window's files, the GUI thread
/// readies the opening screen. The opening screen's files are read next, while the window's
/// objects are made. The wait for the window's files runs the event loop, so events already
/// posted, such as the model's first state, are handled then.
QQuickWindow* loadMainWindow(QQmlApplicationEngine& engine);

/// Runs `then` once, from the event loop, as soon as `window` has put out its first frame: for work
/// the first frame need not wait for. A window that is never exposed, such as one that starts
/// minimised, draws no frame; `then` runs after `patience` all the same.
void afterFirstFrame(QQuickWindow& window, std::function<void()> then,
                     std::chrono::milliseconds patience = std::chrono::seconds(2));

}  // namespace brindlet::ui

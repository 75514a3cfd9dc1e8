#pragma once

#include <thread>

namespace brindlet::ui {

/// Starts readying, on a thread of its own, process-wide work that the first frame needs but that
/// needn't hold up the window in line: the font configuration, the date formats of the user's
/// calendar and the bundled icons. Called first thing in main, so that the application object and
/// the window load on the GUI thread meanwhile; keep the thread until before the application object
/// goes.
[[nodiscard]] std::jthread startStartupWarmUp();

}  // namespace brindlet::ui

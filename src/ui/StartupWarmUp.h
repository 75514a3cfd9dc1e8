#pragma once

#include <thread>

namespace brindlet::ui {

/// Readies, on a thread of its own, process-wide work that the first frame needs but that needn't
/// hold up the window in line: the font configuration and the date formats of the user's
/// calendar. Made first thing in main, so that the application object and the window load on the
/// GUI thread while this runs beside it.
class StartupWarmUp {
 public:
  StartupWarmUp();
  ~StartupWarmUp();

  StartupWarmUp(const StartupWarmUp&) = delete;
  StartupWarmUp& operator=(const StartupWarmUp&) = delete;

 private:
  std::thread thread_;
};

}  // namespace brindlet::ui

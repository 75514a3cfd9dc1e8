#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

#include "FontConfiguration.h"

namespace brindlet::ui {

/// Readies, on a thread of its own, process-wide work that the first frame needs but that needn't
/// hold up the window in line. Made first thing in main, so that the application object and the
/// window load on the GUI thread meanwhile. The font configuration and the date formats of the
/// user's calendar are readied at once; the bundled icons only once the application object
/// exists, since drawing reads the application's font and platform. Made before the application
/// object, it loads the font configuration before any text is laid out: nothing may lay out text
/// before the window loads, which waits for that load.
class StartupWarmUp {
 public:
  /// Ends the icons' drawing when it goes; to be kept no longer than the application object.
  class [[nodiscard]] IconsAllowed {
   public:
    explicit IconsAllowed(StartupWarmUp& warmUp) : warmUp_(&warmUp) {}
    ~IconsAllowed() {
      if (warmUp_ != nullptr) warmUp_->finish();
    }
    IconsAllowed(IconsAllowed&& other) noexcept : warmUp_(std::exchange(other.warmUp_, nullptr)) {}
    IconsAllowed(const IconsAllowed&) = delete;
    IconsAllowed& operator=(const IconsAllowed&) = delete;
    IconsAllowed& operator=(IconsAllowed&&) = delete;

   private:
    StartupWarmUp* warmUp_;
  };

  StartupWarmUp();
  StartupWarmUp(const StartupWarmUp&) = delete;
  StartupWarmUp& operator=(const StartupWarmUp&) = delete;

  /// Lets the icons be drawn: the application object exists.
  IconsAllowed applicationStarted();

  /// Stops what is left of the warm-up and waits for its thread.
  void finish();

 private:
  void run(const std::stop_token& stop);
  bool waitForApplication(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any applicationStartedChanged_;
  bool applicationStarted_ = false;
  const TextLaidOut textLaidOut_;
  // Last, so that it is joined before what it uses goes.
  std::jthread thread_;
};

}  // namespace brindlet::ui

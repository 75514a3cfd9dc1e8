#pragma once

#include <thread>

#include "FontConfiguration.h"

namespace brindlet::ui {

/// Loads the font configuration on a thread of its own. Made first thing in main, before the
/// application object, so that the load runs beside the application object's start and ends
/// before any text is laid out: nothing lays out text before the window loads, which waits for the
/// load. What else the first frame needs readied, the GUI thread readies while the window's files
/// are read: another thread of work would take a processor from the start itself.
class StartupWarmUp {
 public:
  StartupWarmUp();
  StartupWarmUp(const StartupWarmUp&) = delete;
  StartupWarmUp& operator=(const StartupWarmUp&) = delete;

  /// Waits until the font configuration is loaded.
  void finish();

 private:
  const TextLaidOut textLaidOut_;
  // Last, so that it is joined before what it uses goes.
  std::jthread thread_;
};

}  // namespace brindlet::ui

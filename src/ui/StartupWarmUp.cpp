#include "StartupWarmUp.h"

#include <QCoreApplication>

namespace brindlet::ui {

StartupWarmUp::StartupWarmUp()
    : textLaidOut_(QCoreApplication::instance() == nullptr ? TextLaidOut::notYet
                                                           : TextLaidOut::maybe),
      thread_([this] { readyFontConfiguration(textLaidOut_); }) {}

void StartupWarmUp::finish() {
  if (thread_.joinable()) thread_.join();
}

}  // namespace brindlet::ui

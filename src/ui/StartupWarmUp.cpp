#include "StartupWarmUp.h"

#include <QCoreApplication>

#include "SymbolIcon.h"
#include "support/Calendar.h"
#include "support/Clock.h"
#include "support/DateText.h"

namespace brindlet::ui {
namespace {

void readyDateFormats() {
  const Calendar calendar = Calendar::current();
  const Instant now = SystemClock().now();
  for (const std::u16string_view skeleton : {kLongDaySkeleton, kShortDaySkeleton}) {
    (void)dateText(now, calendar, skeleton);
  }
}

}  // namespace

StartupWarmUp::StartupWarmUp()
    : textLaidOut_(QCoreApplication::instance() == nullptr ? TextLaidOut::notYet
                                                           : TextLaidOut::maybe),
      thread_([this](const std::stop_token& stop) { run(stop); }) {}

StartupWarmUp::IconsAllowed StartupWarmUp::applicationStarted() {
  {
    const std::scoped_lock lock(mutex_);
    applicationStarted_ = true;
  }
  applicationStartedChanged_.notify_all();
  return IconsAllowed(*this);
}

void StartupWarmUp::finish() {
  thread_.request_stop();
  if (thread_.joinable()) thread_.join();
}

void StartupWarmUp::run(const std::stop_token& stop) {
  readyFontConfiguration(textLaidOut_);
  readyDateFormats();
  if (waitForApplication(stop)) SymbolIcon::drawBundled(stop);
}

bool StartupWarmUp::waitForApplication(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  return applicationStartedChanged_.wait(lock, stop, [this] { return applicationStarted_; });
}

}  // namespace brindlet::ui

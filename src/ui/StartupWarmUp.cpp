#include "StartupWarmUp.h"

#include <fontconfig/fontconfig.h>

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

std::jthread startStartupWarmUp() {
  return std::jthread([] {
    // Reads the font configuration and the installed fonts' caches once for the process; Qt's
    // font database finds them loaded when the first text is laid out.
    FcInit();
    readyDateFormats();
    SymbolIcon::drawBundled();
  });
}

}  // namespace brindlet::ui

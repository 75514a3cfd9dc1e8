#pragma once

#include <string>
#include <string_view>

#include "support/Calendar.h"
#include "support/Instant.h"

namespace brindlet {

/// ICU skeletons of the date texts the app shows: a long day ("Monday, November 23"), a short
/// day ("23 Mon") and a month day ("Nov 23"), each laid out as the locale prefers.
inline constexpr std::u16string_view kLongDaySkeleton = u"EEEEMMMMd";
inline constexpr std::u16string_view kShortDaySkeleton = u"EEEd";
inline constexpr std::u16string_view kMonthDaySkeleton = u"MMMd";

/// The instant as a date text in the calendar's locale and time zone, laid out by the locale's
/// best pattern for `skeleton`. Empty when ICU can't make such a format. Safe from any thread;
/// the formats are made once per process, whichever thread asks first.
[[nodiscard]] std::string dateText(Instant instant, const Calendar& calendar,
                                   std::u16string_view skeleton);

}  // namespace brindlet

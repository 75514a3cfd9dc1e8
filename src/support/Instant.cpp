#include "support/Instant.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace brindlet {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

bool readDigits(std::string_view text, std::size_t at, std::size_t count, int& value) {
  if (at + count > text.size()) return false;
  value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    value = value * 10 + (text[i] - '0');
  }
  return true;
}

// Reads "[.fraction](Z|+hh:mm|-hh:mm)" at `at`; gives the fraction and the offset in seconds.
bool readFractionAndZone(std::string_view text, std::size_t at, double& fraction,
                         int& offsetSeconds) {
  fraction = 0;
  if (at < text.size() && text[at] == '.') {
    double scale = 0.1;
    std::size_t digits = 0;
    for (++at; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at, ++digits) {
      fraction += (text[at] - '0') * scale;
      scale /= 10;
    }
    if (digits == 0) return false;
  }
  if (at + 1 == text.size() && (text[at] == 'Z' || text[at] == 'z')) {
    offsetSeconds = 0;
    return true;
  }
  int hours = 0;
  int minutes = 0;
  if (at + 6 != text.size() || (text[at] != '+' && text[at] != '-') || text[at + 3] != ':' ||
      !readDigits(text, at + 1, 2, hours) || !readDigits(text, at + 4, 2, minutes) || hours > 23 ||
      minutes > 59) {
    return false;
  }
  offsetSeconds = (text[at] == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
  return true;
}

}  // namespace

std::optional<Instant> Instant::fromIso8601(std::string_view text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (!readDigits(text, 0, 4, year) || text.size() < 19 || text[4] != '-' ||
      !readDigits(text, 5, 2, month) || text[7] != '-' || !readDigits(text, 8, 2, day) ||
      (text[10] != 'T' && text[10] != 't') || !readDigits(text, 11, 2, hour) || text[13] != ':' ||
      !readDigits(text, 14, 2, minute) || text[16] != ':' || !readDigits(text, 17, 2, second)) {
    return std::nullopt;
  }
  const year_month_day date{std::chrono::year(year), std::chrono::month(unsigned(month)),
                            std::chrono::day(unsigned(day))};
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  double fraction = 0;
  int offsetSeconds = 0;
  if (!readFractionAndZone(text, 19, fraction, offsetSeconds)) return std::nullopt;
  const auto dayNumber = sys_days(date).time_since_epoch().count();
  const double unix =
      double(dayNumber) * 86400.0 + hour * 3600 + minute * 60 + second + fraction - offsetSeconds;
  return Instant::fromUnix(unix);
}

std::string Instant::iso8601() const {
  const double unix = std::floor(unixSeconds());
  const auto wholeDays = static_cast<long long>(std::floor(unix / 86400.0));
  const auto secondOfDay = static_cast<long long>(unix - double(wholeDays) * 86400.0);
  const year_month_day date{sys_days(days(wholeDays))};
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02lld:%02lld:%02lldZ", int(date.year()),
                unsigned(date.month()), unsigned(date.day()), secondOfDay / 3600,
                secondOfDay / 60 % 60, secondOfDay % 60);
  return text;
}

}  // namespace brindlet

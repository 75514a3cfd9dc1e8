#include "support/Calendar.h"

#include <unicode/calendar.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace brindlet {
namespace {

constexpr double kMillisecondsPerSecond = 1000.0;

UDate toUDate(Instant instant) { return instant.unixSeconds() * kMillisecondsPerSecond; }
Instant fromUDate(UDate date) { return Instant::fromUnix(date / kMillisecondsPerSecond); }

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0);
}

std::chrono::sys_days daysOf(const CivilDate& date) {
  return std::chrono::sys_days(std::chrono::year_month_day(std::chrono::year(int(date.year)),
                                                           std::chrono::month(unsigned(date.month)),
                                                           std::chrono::day(unsigned(date.day))));
}

CivilDate civilOf(std::chrono::sys_days days) {
  const std::chrono::year_month_day date(days);
  return {int(date.year()), unsigned(date.month()), unsigned(date.day())};
}

bool fitsInt32(std::int64_t value) {
  return value >= std::numeric_limits<std::int32_t>::min() &&
         value <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

Calendar::Calendar(std::string_view timeZoneId, int firstWeekday, std::string_view localeId)
    : timeZoneId_(timeZoneId), firstWeekday_(firstWeekday), localeId_(localeId) {
  if (firstWeekday < kSunday || firstWeekday > 7) {
    throw std::invalid_argument("A week must start on a weekday from 1 to 7.");
  }
  std::unique_ptr<icu::TimeZone> zone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZoneId_)));
  icu::UnicodeString canonical;
  UBool isSystemID = false;
  UErrorCode status = U_ZERO_ERROR;
  icu::TimeZone::getCanonicalID(icu::UnicodeString::fromUTF8(timeZoneId_), canonical, isSystemID,
                                status);
  if (U_FAILURE(status) || !isSystemID || *zone == icu::TimeZone::getUnknown()) {
    throw std::invalid_argument("Unknown time zone “" + timeZoneId_ + "”.");
  }
  auto calendar =
      std::make_unique<icu::GregorianCalendar>(*zone, icu::Locale(localeId_.c_str()), status);
  if (U_FAILURE(status)) throw std::invalid_argument("The calendar could not be created.");
  // Proleptic Gregorian rules everywhere, so that the arithmetic fast path of civilDate and
  // ICU's own fields always agree.
  calendar->setGregorianChange(-std::numeric_limits<double>::max(), status);
  calendar->setFirstDayOfWeek(static_cast<UCalendarDaysOfWeek>(firstWeekday));
  calendar->setLenient(true);
  timeZone_ = std::move(zone);
  prototype_ = std::move(calendar);
}

Calendar Calendar::current() {
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  const std::string zoneId = utf8(zone->getID(id));
  const icu::Locale& locale = icu::Locale::getDefault();
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> localeCalendar(icu::Calendar::createInstance(locale, status));
  const int firstWeekday = U_SUCCESS(status) ? int(localeCalendar->getFirstDayOfWeek()) : kSunday;
  try {
    return Calendar(zoneId, firstWeekday, locale.getName());
  } catch (const std::invalid_argument&) {
    return Calendar("UTC", firstWeekday, locale.getName());
  }
}

Calendar Calendar::gregorianUtc() { return Calendar("UTC", kSunday, "en_US_POSIX"); }

CivilDate Calendar::civilDate(Instant instant) const {
  // The zone's offset plus day arithmetic: exact, and much cheaper than a calendar per call.
  const UDate utc = toUDate(instant);
  std::int32_t rawOffset = 0;
  std::int32_t dstOffset = 0;
  UErrorCode status = U_ZERO_ERROR;
  timeZone_->getOffset(utc, false, rawOffset, dstOffset, status);
  const double localMilliseconds = std::floor(utc) + rawOffset + dstOffset;
  const auto dayNumber =
      floorDiv(static_cast<std::int64_t>(localMilliseconds), std::int64_t{86'400'000});
  return civilOf(std::chrono::sys_days(std::chrono::days(dayNumber)));
}

int Calendar::weekday(Instant instant) const {
  return int(std::chrono::weekday(daysOf(civilDate(instant))).c_encoding()) + 1;
}

std::optional<Instant> Calendar::startOfDay(const CivilDate& date) const {
  if (!fitsInt32(date.year) || !fitsInt32(date.month) || !fitsInt32(date.day)) {
    return std::nullopt;
  }
  auto calendar = makeIcuCalendar();
  calendar->clear();
  calendar->set(int32_t(date.year), int32_t(date.month - 1), int32_t(date.day));
  UErrorCode status = U_ZERO_ERROR;
  const UDate start = calendar->getTime(status);
  if (U_FAILURE(status) || !std::isfinite(start)) return std::nullopt;
  return fromUDate(start);
}

Instant Calendar::startOfDay(Instant instant) const {
  // A day without a midnight (a daylight-saving change at 00:00) starts at its first instant.
  return startOfDay(civilDate(instant)).value_or(instant);
}

DateInterval Calendar::weekInterval(Instant instant) const {
  const auto day = daysOf(civilDate(instant));
  const int weekdayNumber = int(std::chrono::weekday(day).c_encoding()) + 1;
  const int daysSinceWeekStart = (weekdayNumber - firstWeekday_ + 7) % 7;
  const auto firstDay = day - std::chrono::days(daysSinceWeekStart);
  const Instant start = startOfDay(civilOf(firstDay)).value_or(instant);
  const Instant end = startOfDay(civilOf(firstDay + std::chrono::days(7))).value_or(instant);
  return {start, end};
}

Instant Calendar::addingDays(Instant instant, int days) const {
  return addingField(instant, UCAL_DATE, days);
}

Instant Calendar::addingWeeks(Instant instant, int weeks) const {
  return addingField(instant, UCAL_WEEK_OF_YEAR, weeks);
}

Instant Calendar::addingField(Instant instant, int field, int amount) const {
  auto calendar = makeIcuCalendar();
  UErrorCode status = U_ZERO_ERROR;
  calendar->setTime(toUDate(instant), status);
  calendar->add(static_cast<UCalendarDateFields>(field), amount, status);
  const UDate result = calendar->getTime(status);
  if (U_FAILURE(status)) throw std::out_of_range("The date is outside the calendar's range.");
  return fromUDate(result);
}

std::unique_ptr<icu::Calendar> Calendar::makeIcuCalendar() const {
  return std::unique_ptr<icu::Calendar>(prototype_->clone());
}

}  // namespace brindlet

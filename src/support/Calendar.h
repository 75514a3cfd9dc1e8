#pragma once

#include <unicode/uversion.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/Instant.h"

U_NAMESPACE_BEGIN
class TimeZone;
class Calendar;
U_NAMESPACE_END

namespace brindlet {

/// Year, month (1 to 12) and day of month of a calendar day.
struct CivilDate {
  std::int64_t year = 0;
  std::int64_t month = 0;
  std::int64_t day = 0;
  friend bool operator==(const CivilDate&, const CivilDate&) = default;
};

/// A half-open span of time, [start, end).
struct DateInterval {
  Instant start;
  Instant end;
  [[nodiscard]] bool contains(Instant instant) const { return start <= instant && instant < end; }
  friend bool operator==(const DateInterval&, const DateInterval&) = default;
};

/// The Gregorian calendar as a person uses it: a time zone, the weekday a week starts on, and
/// a locale for date texts. A value; copies share their immutable ICU objects.
class Calendar {
 public:
  /// Weekdays are numbered 1 (Sunday) to 7 (Saturday).
  static constexpr int kSunday = 1;
  static constexpr int kMonday = 2;

  /// Fails with std::invalid_argument for a time zone ICU doesn't know or a weekday outside
  /// 1 to 7.
  Calendar(std::string_view timeZoneId, int firstWeekday, std::string_view localeId = "en_US");

  /// The user's calendar: the machine's time zone, and the locale and first weekday of the
  /// user's language settings.
  [[nodiscard]] static Calendar current();
  /// A Gregorian calendar fixed to UTC, weeks starting on Sunday.
  [[nodiscard]] static Calendar gregorianUtc();

  [[nodiscard]] const std::string& timeZoneId() const { return timeZoneId_; }
  [[nodiscard]] int firstWeekday() const { return firstWeekday_; }
  [[nodiscard]] const std::string& localeId() const { return localeId_; }

  /// The calendar day the instant falls on in this calendar's time zone.
  [[nodiscard]] CivilDate civilDate(Instant instant) const;
  /// The weekday of the instant, 1 (Sunday) to 7 (Saturday).
  [[nodiscard]] int weekday(Instant instant) const;
  /// The first instant of the day with these components, which roll over as the Gregorian
  /// rules do (month 13 is January of the next year). Absent when no date can be formed.
  [[nodiscard]] std::optional<Instant> startOfDay(const CivilDate& date) const;
  /// The first instant of the day that holds `instant`.
  [[nodiscard]] Instant startOfDay(Instant instant) const;
  /// The week that holds `instant`, from the start of its first weekday to the start of the
  /// next week.
  [[nodiscard]] DateInterval weekInterval(Instant instant) const;
  /// The same wall-clock time `days` calendar days later (or earlier when negative).
  [[nodiscard]] Instant addingDays(Instant instant, int days) const;
  [[nodiscard]] Instant addingWeeks(Instant instant, int weeks) const;

  friend bool operator==(const Calendar& a, const Calendar& b) {
    return a.timeZoneId_ == b.timeZoneId_ && a.firstWeekday_ == b.firstWeekday_ &&
           a.localeId_ == b.localeId_;
  }

 private:
  [[nodiscard]] std::unique_ptr<icu::Calendar> makeIcuCalendar() const;
  [[nodiscard]] Instant addingField(Instant instant, int field, int amount) const;

  std::string timeZoneId_;
  int firstWeekday_;
  std::string localeId_;
  std::shared_ptr<const icu::TimeZone> timeZone_;
  std::shared_ptr<const icu::Calendar> prototype_;
};

}  // namespace brindlet

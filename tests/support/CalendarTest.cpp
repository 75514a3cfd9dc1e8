#include <gtest/gtest.h>

#include <stdexcept>

#include "support/Calendar.h"

namespace brindlet {
namespace {

Instant utc(const char* text) { return *Instant::fromIso8601(text); }

TEST(CalendarTest, CivilDateFollowsTheTimeZone) {
  const Calendar berlin("Europe/Berlin", Calendar::kMonday);
  const Calendar newYork("America/New_York", Calendar::kSunday);
  const Instant lateEvening = utc("2026-11-21T23:30:00Z");
  EXPECT_EQ(berlin.civilDate(lateEvening), (CivilDate{2026, 11, 22}));
  EXPECT_EQ(newYork.civilDate(lateEvening), (CivilDate{2026, 11, 21}));
  EXPECT_EQ(Calendar::gregorianUtc().civilDate(lateEvening), (CivilDate{2026, 11, 21}));
}

TEST(CalendarTest, StartOfDayIsLocalMidnight) {
  const Calendar berlin("Europe/Berlin", Calendar::kMonday);
  EXPECT_EQ(berlin.startOfDay(utc("2026-07-01T12:00:00Z")), utc("2026-06-30T22:00:00Z"));
  EXPECT_EQ(berlin.startOfDay(CivilDate{2026, 1, 15}), utc("2026-01-14T23:00:00Z"));
}

TEST(CalendarTest, DayWithoutMidnightStartsAtItsFirstInstant) {
  // Clocks in Santiago jumped from 00:00 to 01:00 on 2022-09-11.
  const Calendar santiago("America/Santiago", Calendar::kMonday);
  const Instant start = *santiago.startOfDay(CivilDate{2022, 9, 11});
  EXPECT_EQ(start, utc("2022-09-11T04:00:00Z"));
  EXPECT_EQ(santiago.civilDate(start), (CivilDate{2022, 9, 11}));
}

TEST(CalendarTest, ComponentsRollOverAsGregorianRulesSay) {
  const Calendar calendar = Calendar::gregorianUtc();
  EXPECT_EQ(calendar.startOfDay(CivilDate{2026, 13, 40}), utc("2027-02-09T00:00:00Z"));
  EXPECT_EQ(calendar.startOfDay(CivilDate{2026, 3, 0}), utc("2026-02-28T00:00:00Z"));
  EXPECT_FALSE(calendar.startOfDay(CivilDate{40'000'000'000, 1, 1}).has_value());
}

TEST(CalendarTest, WeekStartsOnTheCalendarsFirstWeekday) {
  const Instant saturday = utc("2026-11-21T12:00:00Z");
  const DateInterval sundayWeek = Calendar("UTC", Calendar::kSunday).weekInterval(saturday);
  const DateInterval mondayWeek = Calendar("UTC", Calendar::kMonday).weekInterval(saturday);
  EXPECT_EQ(sundayWeek.start, utc("2026-11-15T00:00:00Z"));
  EXPECT_EQ(sundayWeek.end, utc("2026-11-22T00:00:00Z"));
  EXPECT_EQ(mondayWeek.start, utc("2026-11-16T00:00:00Z"));
  EXPECT_EQ(mondayWeek.end, utc("2026-11-23T00:00:00Z"));
  EXPECT_TRUE(mondayWeek.contains(saturday));
}

TEST(CalendarTest, WeekWithDaylightSavingChangeIsAnHourShort) {
  const Calendar berlin("Europe/Berlin", Calendar::kMonday);
  const DateInterval week = berlin.weekInterval(utc("2026-03-29T12:00:00Z"));
  EXPECT_EQ(week.start, utc("2026-03-22T23:00:00Z"));
  EXPECT_EQ(week.end, utc("2026-03-29T22:00:00Z"));
  EXPECT_DOUBLE_EQ(week.end.since(week.start), 7 * 86400 - 3600);
}

TEST(CalendarTest, AddingDaysKeepsTheWallClockAcrossDaylightSaving) {
  const Calendar newYork("America/New_York", Calendar::kSunday);
  const Instant beforeChange = utc("2026-11-01T04:30:00Z");                         // 00:30 EDT
  const Instant nineInTheMorning = utc("2026-10-31T13:00:00Z");                     // 09:00 EDT
  EXPECT_EQ(newYork.addingDays(nineInTheMorning, 2), utc("2026-11-02T14:00:00Z"));  // 09:00 EST
  EXPECT_EQ(newYork.addingDays(beforeChange, -1), utc("2026-10-31T04:30:00Z"));
  EXPECT_EQ(newYork.addingWeeks(nineInTheMorning, 1), utc("2026-11-07T14:00:00Z"));
}

TEST(CalendarTest, LordHoweHalfHourChangeKeepsDaysWhole) {
  const Calendar lordHowe("Australia/Lord_Howe", Calendar::kMonday);
  // Daylight saving ends there on 2026-04-05 at 02:00, going back by 30 minutes.
  const Instant start = *lordHowe.startOfDay(CivilDate{2026, 4, 5});
  const Instant next = *lordHowe.startOfDay(CivilDate{2026, 4, 6});
  EXPECT_DOUBLE_EQ(next.since(start), 86400 + 1800);
  EXPECT_EQ(lordHowe.civilDate(next.advanced(-1)), (CivilDate{2026, 4, 5}));
}

TEST(CalendarTest, WeekdayCountsFromSunday) {
  const Calendar calendar = Calendar::gregorianUtc();
  EXPECT_EQ(calendar.weekday(utc("2026-11-22T10:00:00Z")), 1);
  EXPECT_EQ(calendar.weekday(utc("2026-11-21T10:00:00Z")), 7);
}

TEST(CalendarTest, UnknownTimeZoneIsRefused) {
  EXPECT_THROW(Calendar("Mars/Olympus_Mons", Calendar::kMonday), std::invalid_argument);
  EXPECT_THROW(Calendar("UTC", 8), std::invalid_argument);
}

TEST(CalendarTest, CurrentCalendarFollowsTheEnvironmentsTimeZone) {
  const Calendar current = Calendar::current();
  EXPECT_FALSE(current.timeZoneId().empty());
  EXPECT_GE(current.firstWeekday(), 1);
  EXPECT_LE(current.firstWeekday(), 7);
}

TEST(CalendarTest, CopiesAreEqualAndIndependent) {
  const Calendar berlin("Europe/Berlin", Calendar::kMonday, "de_DE");
  const Calendar copy = berlin;  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(copy, berlin);
  EXPECT_EQ(copy.localeId(), "de_DE");
  EXPECT_NE(berlin, Calendar("Europe/Berlin", Calendar::kSunday, "de_DE"));
}

}  // namespace
}  // namespace brindlet

#include <gtest/gtest.h>

#include <map>
#include <unordered_set>

#include "records/LocalDay.h"

namespace brindlet {
namespace {

LocalDay roundTrip(const LocalDay& day) {
  JsonWriter out;
  toJson(out, day);
  const JsonDocument document(out.text());
  return localDayFromJson(document.root());
}

TEST(LocalDayTest, OutOfRangeDayIsConstructedAndRoundTripsThroughJsonUnchanged) {
  const LocalDay odd{2026, 13, 40};
  EXPECT_EQ(odd.month, 13);
  EXPECT_EQ(roundTrip(odd), odd);
}

TEST(LocalDayTest, OnlyDateInCalendarRollsAnOutOfRangeDayOver) {
  const Calendar utc = Calendar::gregorianUtc();
  EXPECT_EQ(LocalDay(2026, 13, 40).date(utc), Instant::fromIso8601("2027-02-09T00:00:00Z"));
  EXPECT_FALSE(LocalDay(1LL << 40, 1, 1).date(utc).has_value());
}

TEST(LocalDayTest, ComparesTheYearFirst) {
  EXPECT_LT(LocalDay(2025, 12, 31), LocalDay(2026, 1, 1));
  EXPECT_LT(LocalDay(2026, 1, 31), LocalDay(2026, 2, 1));
  EXPECT_LT(LocalDay(2026, 2, 1), LocalDay(2026, 2, 2));
  EXPECT_EQ(LocalDay(2026, 2, 2), LocalDay(2026, 2, 2));
}

TEST(LocalDayTest, DayOfAnInstantComesFromTheCalendarsTimeZone) {
  const Instant instant = *Instant::fromIso8601("2026-11-21T23:30:00Z");
  EXPECT_EQ(LocalDay(instant, Calendar("Asia/Tokyo", Calendar::kSunday)), LocalDay(2026, 11, 22));
  EXPECT_EQ(LocalDay(instant, Calendar("America/Los_Angeles", Calendar::kSunday)),
            LocalDay(2026, 11, 21));
}

TEST(LocalDayTest, DateInCalendarIsTheStartOfTheDayThere) {
  const Calendar tokyo("Asia/Tokyo", Calendar::kSunday);
  EXPECT_EQ(LocalDay(2026, 11, 22).date(tokyo), Instant::fromIso8601("2026-11-21T15:00:00Z"));
}

TEST(LocalDayTest, UsableAsAKeyOfEitherMap) {
  std::map<LocalDay, int> ordered{{{2026, 1, 2}, 2}, {{2025, 12, 31}, 1}};
  EXPECT_EQ(ordered.begin()->second, 1);
  std::unordered_set<LocalDay> hashed{{2026, 1, 2}, {2026, 1, 2}, {2026, 2, 1}};
  EXPECT_EQ(hashed.size(), 2U);
}

TEST(LocalDayTest, JsonIsAnObjectOfThreeNumbers) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, LocalDay(2026, 11, 21));
  EXPECT_EQ(out.text(), R"({"day":21,"month":11,"year":2026})");
}

}  // namespace
}  // namespace brindlet

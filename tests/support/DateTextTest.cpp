#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/Calendar.h"
#include "support/DateText.h"

namespace brindlet {
namespace {

Instant utc(const char* text) { return *Instant::fromIso8601(text); }

TEST(DateTextTest, EachSkeletonTakesTheLocalesOwnLayout) {
  const Calendar american("America/New_York", Calendar::kSunday, "en_US");
  const Instant noon = utc("2026-11-23T17:00:00Z");
  EXPECT_EQ(dateText(noon, american, kLongDaySkeleton), "Monday, November 23");
  EXPECT_EQ(dateText(noon, american, kShortDaySkeleton), "23 Mon");
  EXPECT_EQ(dateText(noon, american, kMonthDaySkeleton), "Nov 23");
  const Calendar german("Europe/Berlin", Calendar::kMonday, "de_DE");
  EXPECT_EQ(dateText(noon, german, kMonthDaySkeleton), "23. Nov.");
}

TEST(DateTextTest, TheDayIsTheOneInTheCalendarsTimeZone) {
  const Instant lateEvening = utc("2026-11-21T23:30:00Z");
  EXPECT_EQ(dateText(lateEvening, Calendar("Europe/Berlin", Calendar::kMonday), kShortDaySkeleton),
            "22 Sun");
  EXPECT_EQ(
      dateText(lateEvening, Calendar("America/New_York", Calendar::kSunday), kShortDaySkeleton),
      "21 Sat");
}

TEST(DateTextTest, ThreadsFormattingAtOnceEachGetTheirOwnDay) {
  const Calendar calendar("Europe/Berlin", Calendar::kMonday);
  std::vector<std::string> seen(8);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    threads.emplace_back([&, i] {
      const Instant day = calendar.addingDays(utc("2026-11-16T11:00:00Z"), static_cast<int>(i));
      for (int round = 0; round < 200; ++round)
        seen[i] = dateText(day, calendar, kShortDaySkeleton);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(seen, (std::vector<std::string>{"16 Mon", "17 Tue", "18 Wed", "19 Thu", "20 Fri",
                                            "21 Sat", "22 Sun", "23 Mon"}));
}

}  // namespace
}  // namespace brindlet

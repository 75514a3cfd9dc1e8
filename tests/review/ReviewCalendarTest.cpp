// Weeks in calendars whose days aren't all 24 hours long, and weeks that start on different
// weekdays.
#include <gtest/gtest.h>

#include "Builders.h"
#include "review/RecommendationEngine.h"

namespace brindlet {
namespace {

using testing::makeTask;

struct Week {
  const char* zone;
  int firstWeekday;
  const char* inside;  // an instant inside the week
  LocalDay start;
  LocalDay end;
};

class ReviewCalendarTest : public ::testing::TestWithParam<Week> {};

TEST_P(ReviewCalendarTest, WeekBoundsAndMembershipOfItsFirstAndLastDays) {
  const Week& week = GetParam();
  const Calendar calendar(week.zone, week.firstWeekday);
  const FocusTask onFirst = makeTask().plannedOn(week.start).estimated(10);
  const FocusTask onLast = makeTask().plannedOn(week.end).estimated(20);
  const LocalDay dayBefore =
      LocalDay(calendar.addingDays(*week.start.date(calendar), -1), calendar);
  const FocusTask before = makeTask().plannedOn(dayBefore).estimated(40);
  const WeeklyReview review = RecommendationEngine::review(*Instant::fromIso8601(week.inside),
                                                           {onFirst, onLast, before}, calendar);
  EXPECT_EQ(review.weekStart, week.start);
  EXPECT_EQ(review.weekEnd, week.end);
  EXPECT_EQ(review.carryoverTaskIDs, (std::vector{onFirst.id, onLast.id}));
  EXPECT_EQ(review.plannedMinutes, 30);
}

INSTANTIATE_TEST_SUITE_P(
    CalendarsThatBite, ReviewCalendarTest,
    ::testing::Values(
        // Clocks go forward on Sunday 2026-03-08 in New York and on 2026-03-29 in Berlin.
        Week{"America/New_York",
             Calendar::kSunday,
             "2026-03-10T12:00:00Z",
             {2026, 3, 8},
             {2026, 3, 14}},
        Week{"America/New_York",
             Calendar::kMonday,
             "2026-03-08T12:00:00Z",
             {2026, 3, 2},
             {2026, 3, 8}},
        Week{"America/New_York",
             Calendar::kSunday,
             "2026-11-01T07:30:00Z",
             {2026, 11, 1},
             {2026, 11, 7}},
        Week{"Europe/Berlin",
             Calendar::kMonday,
             "2026-03-29T01:30:00Z",
             {2026, 3, 23},
             {2026, 3, 29}},
        Week{"Europe/Berlin",
             Calendar::kMonday,
             "2026-10-25T22:59:59Z",
             {2026, 10, 19},
             {2026, 10, 25}},
        Week{"Europe/Berlin",
             Calendar::kSunday,
             "2026-10-25T23:00:00Z",
             {2026, 10, 25},
             {2026, 10, 31}},
        // Lord Howe Island moves its clocks by half an hour, on 2026-04-05 and 2026-10-04.
        Week{"Australia/Lord_Howe",
             Calendar::kMonday,
             "2026-04-05T12:00:00Z",
             {2026, 3, 30},
             {2026, 4, 5}},
        Week{"Australia/Lord_Howe",
             Calendar::kSunday,
             "2026-10-03T16:00:00Z",
             {2026, 10, 4},
             {2026, 10, 10}},
        // A week across the turn of the year.
        Week{"UTC", Calendar::kMonday, "2026-12-31T12:00:00Z", {2026, 12, 28}, {2027, 1, 3}}),
    [](const ::testing::TestParamInfo<Week>& info) { return "Week" + std::to_string(info.index); });

TEST(ReviewCalendarTest, DayStartingExactlyAtTheWeeksEndBelongsToTheWeek) {
  // The week's interval is closed: the first day of the next week starts at its very end.
  const Calendar berlin("Europe/Berlin", Calendar::kMonday);
  const FocusTask nextMonday = makeTask().plannedOn({2026, 3, 30}).estimated(15);
  const FocusTask nextTuesday = makeTask().plannedOn({2026, 3, 31}).estimated(15);
  const WeeklyReview review = RecommendationEngine::review(
      *Instant::fromIso8601("2026-03-27T12:00:00Z"), {nextMonday, nextTuesday}, berlin);
  EXPECT_EQ(review.carryoverTaskIDs, std::vector{nextMonday.id});
}

TEST(ReviewCalendarTest, CompletionAtTheInstantTheWeekBeginsCounts) {
  const Calendar newYork("America/New_York", Calendar::kSunday);
  FocusTask task = makeTask().plannedOn({2026, 3, 8}).withStatus(TaskStatus::completed);
  task.completedAt = *Instant::fromIso8601("2026-03-08T05:00:00Z");  // midnight EST
  const WeeklyReview review =
      RecommendationEngine::review(*Instant::fromIso8601("2026-03-11T12:00:00Z"), {task}, newYork);
  EXPECT_EQ(review.completedTaskCount, 1);
  task.completedAt = task.completedAt->advanced(-1);
  EXPECT_EQ(
      RecommendationEngine::review(*Instant::fromIso8601("2026-03-11T12:00:00Z"), {task}, newYork)
          .completedTaskCount,
      0);
}

TEST(ReviewCalendarTest, NextDayRollsOverMonthsYearsAndLeapDays) {
  EXPECT_EQ(RecommendationEngine::nextDay({2026, 1, 31}), LocalDay(2026, 2, 1));
  EXPECT_EQ(RecommendationEngine::nextDay({2026, 12, 31}), LocalDay(2027, 1, 1));
  EXPECT_EQ(RecommendationEngine::nextDay({2028, 2, 28}), LocalDay(2028, 2, 29));
  EXPECT_EQ(RecommendationEngine::nextDay({2026, 2, 28}), LocalDay(2026, 3, 1));
  EXPECT_EQ(RecommendationEngine::nextDay({2026, 3, 8}), LocalDay(2026, 3, 9));
  EXPECT_EQ(RecommendationEngine::nextDay({2026, 13, 40}), LocalDay(2027, 2, 10));
}

}  // namespace
}  // namespace brindlet

#include <gtest/gtest.h>

#include "Builders.h"
#include "review/RecommendationEngine.h"

namespace brindlet {
namespace {

using testing::makeTask;

// Week of Monday 2026-11-16 to Sunday 2026-11-22 in a Monday-first UTC calendar.
const Calendar kCalendar("UTC", Calendar::kMonday);
const Instant kWednesday = *Instant::fromIso8601("2026-11-18T12:00:00Z");
const Instant kLastWeek = *Instant::fromIso8601("2026-11-12T12:00:00Z");
const Instant kNextWeek = *Instant::fromIso8601("2026-11-25T12:00:00Z");

FocusTask completedTask(LocalDay planned, Instant completedAt, double focusSeconds) {
  FocusTask task = makeTask().plannedOn(planned).withStatus(TaskStatus::completed);
  task.completedAt = completedAt;
  task.accumulatedFocusSeconds = focusSeconds;
  return task;
}

WeeklyReview reviewOf(const std::vector<FocusTask>& tasks) {
  return RecommendationEngine::review(kWednesday, tasks, kCalendar);
}

TEST(WeeklyReviewTest, EmptyTaskListGivesZerosEmptyListsAndTheRightWeekBounds) {
  const WeeklyReview review = reviewOf({});
  EXPECT_EQ(review.weekStart, LocalDay(2026, 11, 16));
  EXPECT_EQ(review.weekEnd, LocalDay(2026, 11, 22));
  EXPECT_EQ(review, (WeeklyReview{.weekStart = {2026, 11, 16}, .weekEnd = {2026, 11, 22}}));
}

TEST(WeeklyReviewTest, TaskPlannedThisWeekAndCompletedLastWeekCountsAsPlannedOnly) {
  const WeeklyReview review = reviewOf({completedTask({2026, 11, 17}, kLastWeek, 600)});
  EXPECT_EQ(review.plannedTaskCount, 1);
  EXPECT_EQ(review.completedTaskCount, 0);
  EXPECT_EQ(review.completionRate, 0);
  EXPECT_TRUE(review.carryoverTaskIDs.empty());
  EXPECT_TRUE(review.dailyWorkload.empty());
  EXPECT_TRUE(review.completedTaskIDs.empty());
  EXPECT_EQ(review.actualMinutes, 0);
}

TEST(WeeklyReviewTest, TaskPlannedNextWeekButCompletedThisWeekCountsOnlyAsWorkDone) {
  const FocusTask task = completedTask({2026, 11, 26}, kWednesday, 1800);
  const WeeklyReview review = reviewOf({task});
  EXPECT_EQ(review.completedTaskIDs, std::vector{task.id});
  EXPECT_EQ(review.actualMinutes, 30);
  EXPECT_EQ(review.plannedTaskCount, 0);
  EXPECT_EQ(review.completedTaskCount, 0);
  EXPECT_TRUE(review.completedByPriority.empty());
  EXPECT_TRUE(review.carryoverTaskIDs.empty() && review.dailyWorkload.empty());
}

TEST(WeeklyReviewTest, ArchivedTaskIsNeitherPlannedNorCompleted) {
  FocusTask task = makeTask().plannedOn({2026, 11, 18}).withStatus(TaskStatus::archived);
  task.completedAt = kWednesday;
  task.accumulatedFocusSeconds = 6000;
  const WeeklyReview review = reviewOf({task});
  EXPECT_EQ(review, reviewOf({}));
}

TEST(WeeklyReviewTest, PausedTaskWithFocusTimeAddsNothingToActualMinutes) {
  FocusTask task = makeTask().plannedOn({2026, 11, 18}).withStatus(TaskStatus::paused);
  task.accumulatedFocusSeconds = 3000;
  EXPECT_EQ(reviewOf({task}).actualMinutes, 0);
}

TEST(WeeklyReviewTest, FiftyNineSecondsOfFocusGiveZeroActualMinutes) {
  EXPECT_EQ(reviewOf({completedTask({2026, 11, 18}, kWednesday, 59)}).actualMinutes, 0);
  EXPECT_EQ(reviewOf({completedTask({2026, 11, 18}, kWednesday, 119.9)}).actualMinutes, 1);
}

TEST(WeeklyReviewTest, WeekStartFollowsTheCalendarsFirstWeekday) {
  const Calendar sundayFirst("UTC", Calendar::kSunday);
  const WeeklyReview review = RecommendationEngine::review(kWednesday, {}, sundayFirst);
  EXPECT_EQ(review.weekStart, LocalDay(2026, 11, 15));
  EXPECT_EQ(review.weekEnd, LocalDay(2026, 11, 21));
}

TEST(WeeklyReviewTest, FiguresOfAMixedWeek) {
  FocusTask done = completedTask({2026, 11, 16}, kWednesday, 3600);
  done.priority = TaskPriority::high;
  done.estimatedMinutes = 50;
  done.skipCount = 1;
  FocusTask open = makeTask().plannedOn({2026, 11, 18}).estimated(40);
  FocusTask unestimated = makeTask().plannedOn({2026, 11, 20});
  unestimated.skipCount = 3;
  const FocusTask elsewhere = makeTask().plannedOn({2026, 12, 1}).estimated(300);
  const WeeklyReview review = reviewOf({done, open, unestimated, elsewhere});
  EXPECT_EQ(review.plannedTaskCount, 3);
  EXPECT_EQ(review.completedTaskCount, 1);
  EXPECT_DOUBLE_EQ(review.completionRate, 1.0 / 3.0);
  EXPECT_EQ(review.plannedMinutes, 90);
  EXPECT_EQ(review.actualMinutes, 60);
  EXPECT_EQ(review.completedByPriority,
            (std::map<TaskPriority, std::int64_t>{{TaskPriority::high, 1}}));
  EXPECT_EQ(review.carryoverTaskIDs, (std::vector{open.id, unestimated.id}));
  EXPECT_EQ(review.dailyWorkload,
            (std::map<LocalDay, std::int64_t>{{{2026, 11, 18}, 40}, {{2026, 11, 20}, 0}}));
  std::vector<Uuid> skipped{done.id, unestimated.id};
  std::sort(skipped.begin(), skipped.end(),
            [](const Uuid& a, const Uuid& b) { return a.uppercaseText() < b.uppercaseText(); });
  EXPECT_EQ(review.skippedTaskIDs, skipped);
}

TEST(WeeklyReviewTest, CompletedTasksAreListedByCompletionTime) {
  const FocusTask later = completedTask({2026, 11, 18}, kWednesday.advanced(60), 0);
  const FocusTask earlier = completedTask({2026, 11, 18}, kWednesday, 0);
  EXPECT_EQ(reviewOf({later, earlier}).completedTaskIDs, (std::vector{earlier.id, later.id}));
}

TEST(WeeklyReviewTest, PlannedDayThatRollsOverIsPlacedByTheCalendar) {
  // Month 11, day 48 is 2026-12-18, outside the week; day 17 of month 11 is inside.
  const FocusTask rolled = makeTask().plannedOn({2026, 10, 48}).estimated(10);
  const FocusTask outside = makeTask().plannedOn({2026, 11, 48}).estimated(10);
  const WeeklyReview review = reviewOf({rolled, outside});
  EXPECT_EQ(review.plannedTaskCount, 1);
  EXPECT_EQ(review.carryoverTaskIDs, std::vector{rolled.id});
}

}  // namespace
}  // namespace brindlet

// The values and texts the screens show, read from the model's published state.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AppModelFixture.h"

namespace brindlet::testing {
namespace {

FocusTask taskWithFocus(double seconds) {
  FocusTask task = makeTask().titled("Measured").plannedOn(kToday);
  task.accumulatedFocusSeconds = seconds;
  return task;
}

TEST_F(AppModelTest, FormatOfNegativeHourAndHundredHoursReadsAsAClock) {
  EXPECT_EQ(AppModelState::format(-5), "00:00");
  EXPECT_EQ(AppModelState::format(-0.5), "00:00");
  EXPECT_EQ(AppModelState::format(0), "00:00");
  EXPECT_EQ(AppModelState::format(59.9), "00:59");
  EXPECT_EQ(AppModelState::format(3599), "59:59");
  EXPECT_EQ(AppModelState::format(3600), "01:00:00");
  EXPECT_EQ(AppModelState::format(360000), "100:00:00");
}

TEST_F(AppModelTest, FocusedDurationTextCountsWholeMinutesAndHours) {
  const auto model = makeModel();
  const AppModelState& state = model->state();
  EXPECT_EQ(state.focusedDurationText(taskWithFocus(59.9)), "Less than 1m focused");
  EXPECT_EQ(state.focusedDurationText(taskWithFocus(60)), "1m focused");
  EXPECT_EQ(state.focusedDurationText(taskWithFocus(3600)), "1h 0m focused");
  EXPECT_EQ(state.focusedDurationText(taskWithFocus(3600 + 5 * 60 + 59)), "1h 5m focused");
  EXPECT_EQ(state.elapsedText(taskWithFocus(59.9)), "00:59");
}

TEST_F(AppModelTest, RunningSegmentStartingAfterNowAddsNothing) {
  const auto model = makeModel();
  FocusTask task = taskWithFocus(90);
  task.activeSegmentStartedAt = kTestNow.advanced(600);
  EXPECT_EQ(model->state().focusSeconds(task), 90);
  EXPECT_EQ(model->state().elapsedText(task), "01:30");

  task.activeSegmentStartedAt = kTestNow.advanced(-30);
  EXPECT_EQ(model->state().elapsedText(task), "02:00");
}

TEST_F(AppModelTest, WeekDaysOfASelectedSundayRunFromTheMondayBefore) {
  const LocalDay sunday{2026, 11, 22};
  const std::vector<LocalDay> expected = {{2026, 11, 16}, {2026, 11, 17}, {2026, 11, 18},
                                          {2026, 11, 19}, {2026, 11, 20}, {2026, 11, 21},
                                          {2026, 11, 22}};
  for (const Calendar& userCalendar : {Calendar("UTC", Calendar::kMonday, "en_GB"),
                                       Calendar("America/New_York", Calendar::kSunday, "en_US")}) {
    calendar = userCalendar;
    const auto model = makeModel();
    model->setSelectedDay(sunday);
    EXPECT_EQ(model->state().weekDays(), expected) << userCalendar.timeZoneId();
    EXPECT_EQ(model->state().planningCalendar.firstWeekday(), Calendar::kMonday);
  }
}

TEST_F(AppModelTest, SelectedGroupFallsBackToTheFirstWhenItsGroupIsDeleted) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news, DomainGroup::socialDistractions()};
  store(state);
  const auto model = makeRecoveredModel();
  ASSERT_EQ(model->state().selectedGroup(), news);

  model->engine().replaceGroups({DomainGroup::socialDistractions()});
  model->heartbeat();
  EXPECT_EQ(model->state().selectedGroupID, news.id);
  EXPECT_EQ(model->state().selectedGroup(), DomainGroup::socialDistractions());
}

TEST_F(AppModelTest, DurationFollowsTheChoiceAndKeepsCustomMinutes) {
  const auto model = makeModel();
  EXPECT_EQ(model->state().duration(), 25 * 60);
  model->setCustomMinutes(95);
  model->setDurationChoice(DurationChoice::fourHours);
  EXPECT_EQ(model->state().duration(), 240 * 60);
  model->setDurationChoice(DurationChoice::custom);
  EXPECT_EQ(model->state().duration(), 95 * 60);
  std::vector<std::string> titles;
  for (const DurationChoice choice : kAllDurationChoices) titles.push_back(title(choice));
  EXPECT_EQ(titles, (std::vector<std::string>{"25 min", "1 hour", "4 hours", "Custom"}));
}

TEST_F(AppModelTest, DayLabelShowsTheAbbreviatedWeekdayAndDayInTheUsersLocale) {
  calendar = Calendar("UTC", Calendar::kMonday, "en_US");
  EXPECT_EQ(makeModel()->state().dayLabel({2026, 11, 16}), "16 Mon");
  calendar = Calendar("Europe/Berlin", Calendar::kMonday, "de_DE");
  EXPECT_EQ(makeModel()->state().dayLabel({2026, 11, 16}), "Mo., 16.");
}

TEST_F(AppModelTest, StartingValuesComeFromTheClockAndTheEngine) {
  const auto model = makeModel();
  const AppModelState& state = model->state();
  EXPECT_EQ(state.now, kTestNow);
  EXPECT_EQ(state.reviewDate, kTestNow);
  EXPECT_EQ(state.selectedDay, kToday);
  EXPECT_EQ(state.quickTitle, "");
  EXPECT_EQ(state.durationChoice, DurationChoice::twentyFive);
  EXPECT_EQ(state.customMinutes, 90);
  EXPECT_EQ(state.selectedMode, SessionMode::flexible);
  EXPECT_EQ(state.selectedGroupID, DomainGroup::socialDistractions().id);
  EXPECT_EQ(state.backupStatus, "Preparing backup…");
  EXPECT_FALSE(state.showFlexibleEnd);
  EXPECT_EQ(state.countdown(), "00:00");
}

}  // namespace
}  // namespace brindlet::testing

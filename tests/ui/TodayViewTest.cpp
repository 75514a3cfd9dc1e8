// The Today screen driven through the window with the mouse and the keyboard.

#include <gtest/gtest.h>

#include "UiFixture.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

using TodayViewTest = UiTest;

QString textOf(QQuickItem* item) { return item ? item->property("text").toString() : QString(); }

FocusTask completedTask(const std::string& title, double focusSeconds) {
  FocusTask task = makeTask().titled(title).plannedOn(kSaturday).estimated(25);
  task.status = TaskStatus::completed;
  task.completedAt = kTestNow;
  task.accumulatedFocusSeconds = focusSeconds;
  return task;
}

TEST_F(TodayViewTest, ADayWithoutTasksShowsDayClearedAndAnEmptyQueue) {
  launch();
  EXPECT_NE(item("dayCleared"), nullptr);
  EXPECT_TRUE(showsText("Day cleared"));
  EXPECT_TRUE(showsText("Add a task or choose another day."));
  EXPECT_TRUE(showsText("Your queue"));
  EXPECT_TRUE(queueTitles().empty());
  EXPECT_EQ(item("completedHeader"), nullptr);
  EXPECT_EQ(textOf(item("dayTitle")), "Saturday, November 21");
  EXPECT_EQ(textOf(item("workload")), "0 tasks · 0h 0m");
  screenshot("today-empty");
}

TEST_F(TodayViewTest, TheWeekStripKeepsSevenEqualCellsThroughEveryNewState) {
  launch();
  QQuickItem* monday = item("weekDay.0");
  ASSERT_NE(monday, nullptr);
  for (int day = 0; day < 7; ++day) {
    QQuickItem* cell = item(QStringLiteral("weekDay.%1").arg(day));
    ASSERT_NE(cell, nullptr) << day;
    EXPECT_GT(cell->width(), 60.0) << day;
    EXPECT_NEAR(cell->width(), monday->width(), 1.0) << day;
  }
  click(item("quickAddField"));
  type("Water the plants");
  pressKey(Qt::Key_Return);
  EXPECT_EQ(item("weekDay.0"), monday);
  EXPECT_EQ(item("weekDay.5")->findChild<QQuickItem*>("weekDayCount")->property("text").toString(),
            "1");
}

TEST_F(TodayViewTest, QuickAddWorksWithReturnAndWithTheAddButton) {
  launch();
  click(item("quickAddField"));
  type("Write the report");
  pressKey(Qt::Key_Return);
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Write the report"});
  EXPECT_EQ(textOf(item("quickAddField")), "");

  click(item("quickAddField"));
  type("Call Sam");
  click(item("addButton"));
  EXPECT_EQ(queueTitles(), (std::vector<QString>{"Write the report", "Call Sam"}));
  EXPECT_EQ(stored().tasks.size(), 2U);
}

TEST_F(TodayViewTest, AQuickTitleOfSpacesDisablesAddWhileReturnStillAddsAndAlerts) {
  launch();
  EXPECT_FALSE(item("addButton")->isEnabled());
  click(item("quickAddField"));
  type("   ");
  EXPECT_FALSE(item("addButton")->isEnabled());
  pressKey(Qt::Key_Return);
  EXPECT_EQ(textOf(item("errorAlertMessage")), "Enter a task title.");
  EXPECT_TRUE(stored().tasks.empty());
}

TEST_F(TodayViewTest, StartFocusPauseResumeFocusAndDone) {
  const FocusTask task = makeTask().titled("Outline the talk").plannedOn(kSaturday).estimated(50);
  launch({task});
  EXPECT_EQ(textOf(item("cardLabel")), "NEXT TASK");
  EXPECT_EQ(buttonsIn(item("nextTaskCard")), (std::vector<QString>{"Start Focus", "Edit"}));

  clickButton("Start Focus");
  EXPECT_EQ(textOf(item("cardLabel")), "IN FOCUS");
  EXPECT_EQ(item("cardIcon")->property("symbol").toString(), "timer");
  EXPECT_EQ(buttonsIn(item("nextTaskCard")), (std::vector<QString>{"Pause", "Done", "Skip"}));
  clock->advance(754);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_EQ(textOf(item("cardElapsed")), "12:34");
  screenshot("today-running");

  clickButton("Pause");
  EXPECT_EQ(storedTask(task.id)->status, TaskStatus::paused);
  clickButton("Resume Focus");
  EXPECT_EQ(storedTask(task.id)->status, TaskStatus::active);
  clickButton("Done");
  EXPECT_EQ(storedTask(task.id)->status, TaskStatus::completed);
  EXPECT_NE(item("dayCleared"), nullptr);
}

TEST_F(TodayViewTest, APausedTaskShowsPausedWithTheArrowAndOnlyResumeFocus) {
  launch({makeTask().titled("Review the budget").plannedOn(kSaturday)});
  clickButton("Start Focus");
  clickButton("Pause");
  EXPECT_EQ(textOf(item("cardLabel")), "PAUSED");
  EXPECT_EQ(item("cardIcon")->property("symbol").toString(), "arrow.right.circle.fill");
  EXPECT_EQ(buttonsIn(item("nextTaskCard")), std::vector<QString>{"Resume Focus"});
}

TEST_F(TodayViewTest, SkipMovesOnToTheNextTask) {
  const FocusTask first = makeTask().titled("First thing").plannedOn(kSaturday);
  const FocusTask second = makeTask().titled("Second thing").plannedOn(kSaturday);
  launch({first, second});
  clickButton("Start Focus");
  clickButton("Skip");
  EXPECT_EQ(storedTask(first.id)->skipCount, 1);
  EXPECT_EQ(textOf(item("cardLabel")), "NEXT TASK");
  EXPECT_EQ(textOf(item("cardTitle")), "Second thing");
}

TEST_F(TodayViewTest, TheCardShowsTuesdaysRunningTaskWhileTheQueueShowsThursday) {
  launch({makeTask().titled("Tuesday's task").plannedOn(kTuesday),
          makeTask().titled("Thursday's task").plannedOn(kThursday)});
  click(item("weekDay.1"));
  clickButton("Start Focus");
  click(item("weekDay.3"));
  EXPECT_EQ(host->state().selectedDay, kThursday);
  EXPECT_EQ(textOf(item("cardTitle")), "Tuesday's task");
  EXPECT_EQ(textOf(item("cardLabel")), "IN FOCUS");
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Thursday's task"});
}

TEST_F(TodayViewTest, TheWeekStripChangesTheDay) {
  launch({makeTask().titled("Gym").plannedOn(kTuesday)});
  EXPECT_EQ(textOf(item("weekDay.1")->findChild<QQuickItem*>("weekDayCount")), "1");
  EXPECT_EQ(accessibleName(item("weekDay.1")), "17 Tue, 1 tasks");
  click(item("weekDay.1"));
  EXPECT_EQ(textOf(item("dayTitle")), "Tuesday, November 17");
  EXPECT_TRUE(item("weekDay.1")->property("selected").toBool());
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Gym"});
}

TEST_F(TodayViewTest, DraggingOneRowOntoAnotherReordersTheQueue) {
  launch({makeTask().titled("Alpha").plannedOn(kSaturday),
          makeTask().titled("Bravo").plannedOn(kSaturday),
          makeTask().titled("Charlie").plannedOn(kSaturday)});
  ASSERT_EQ(queueTitles(), (std::vector<QString>{"Alpha", "Bravo", "Charlie"}));
  drag(item("taskRow.Charlie"), item("taskRow.Alpha"));
  EXPECT_EQ(queueTitles(), (std::vector<QString>{"Charlie", "Alpha", "Bravo"}));
}

TEST_F(TodayViewTest, DroppingARowOnItselfChangesNothing) {
  launch({makeTask().titled("Alpha").plannedOn(kSaturday),
          makeTask().titled("Bravo").plannedOn(kSaturday)});
  const std::int64_t revision = host->state().taskSnapshot.revision();
  QQuickItem* alpha = item("taskRow.Alpha");
  drag(alpha, alpha);
  EXPECT_EQ(queueTitles(), (std::vector<QString>{"Alpha", "Bravo"}));
  EXPECT_EQ(host->state().taskSnapshot.revision(), revision);
  EXPECT_FALSE(dashboard->dropOnRow(dashboard->queue()->rows()[0].taskId,
                                    dashboard->queue()->rows()[0].taskId));
  EXPECT_FALSE(dashboard->dropOnRow("not an id", dashboard->queue()->rows()[0].taskId));
}

TEST_F(TodayViewTest, ACompletedTaskStandsInTheGroupWithItsFocusTimeAndOutOfTheCounts) {
  launch({completedTask("Send the invoice", 1500),
          makeTask().titled("Prepare slides").plannedOn(kSaturday).estimated(30)});
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Prepare slides"});
  EXPECT_EQ(textOf(item("workload")), "1 tasks · 0h 30m");
  EXPECT_EQ(textOf(item("weekDay.5")->findChild<QQuickItem*>("weekDayCount")), "1");
  EXPECT_TRUE(showsText("Completed (1)"));
  EXPECT_EQ(item("taskRow.Send the invoice"), nullptr);

  click(item("completedHeader"));
  QQuickItem* row = item("taskRow.Send the invoice");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(textOf(row->findChild<QQuickItem*>("rowFocused")), "25m focused");
  EXPECT_FALSE(item("complete.Send the invoice")->isEnabled());
}

TEST_F(TodayViewTest, AnEstimateTotalOf180MinutesReadsAsHoursAndMinutes) {
  launch({makeTask().titled("Deep work").plannedOn(kSaturday).estimated(120),
          makeTask().titled("Email").plannedOn(kSaturday).estimated(60)});
  EXPECT_EQ(textOf(item("workload")), "2 tasks · 3h 0m");
}

TEST_F(TodayViewTest, AFullDayWithAQueueAndCompletedTasks) {
  launch({makeTask()
              .titled("Finish the quarterly report")
              .plannedOn(kSaturday)
              .estimated(90)
              .withPriority(TaskPriority::critical),
          makeTask()
              .titled("Reply to the design review")
              .plannedOn(kSaturday)
              .estimated(30)
              .withPriority(TaskPriority::high),
          makeTask().titled("Plan next week").plannedOn(kSaturday).estimated(45),
          makeTask()
              .titled("Book the dentist")
              .plannedOn(kSaturday)
              .estimated(10)
              .withPriority(TaskPriority::low),
          makeTask().titled("Read the onboarding notes").plannedOn(kSaturday),
          completedTask("Morning stand-up", 900), completedTask("Pay the rent", 120)});
  EXPECT_EQ(queueTitles().size(), 5U);
  // Tall enough to show the whole day at once.
  window->resize(1040, 1000);
  click(item("completedHeader"));
  EXPECT_TRUE(showsText("Completed (2)"));
  EXPECT_NE(item("taskRow.Morning stand-up"), nullptr);
  screenshot("today-queue");
}

}  // namespace
}  // namespace brindlet::testing

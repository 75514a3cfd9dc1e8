// The Review screen: the week's figures, the workload chart, the recommendations and the tasks
// finished in the week, driven through the window with the mouse.

#include <gtest/gtest.h>

#include "UiFixture.h"
#include "app/AppModel.h"
#include "persistence/LocalStore.h"

namespace brindlet::testing {
namespace {

constexpr LocalDay kMonday{2026, 11, 16};
constexpr LocalDay kWednesday{2026, 11, 18};

QString textOf(QQuickItem* item) { return item ? item->property("text").toString() : QString(); }

QString childText(QQuickItem* parent, const char* name) {
  return parent ? textOf(parent->findChild<QQuickItem*>(QString::fromLatin1(name))) : QString();
}

/// The name an item gives assistive technology, read from its attached accessibility object.
QString accessibleName(QQuickItem* item) {
  if (!item) return {};
  for (QObject* child : item->children()) {
    if (child->inherits("QQuickAccessibleAttached")) return child->property("name").toString();
  }
  return {};
}

FocusTask completedTask(const std::string& title, LocalDay day, double focusSeconds) {
  FocusTask task = makeTask().titled(title).plannedOn(day).estimated(30);
  task.status = TaskStatus::completed;
  task.completedAt = kTestNow;
  task.accumulatedFocusSeconds = focusSeconds;
  return task;
}

FocusTask skippedTwice(FocusTask task) {
  task.skipCount = 2;
  return task;
}

class ReviewViewTest : public UiTest {
 protected:
  /// Opens the Review screen in a window tall enough to show it whole.
  void openReview() {
    window->resize(1040, 1500);
    click(item("destination.Review"));
    ASSERT_NE(item("reviewView"), nullptr);
  }

  QString metric(const QString& title) const {
    return childText(item("metric." + title), "metricValue");
  }
  QString metricDetail(const QString& title) const {
    return childText(item("metric." + title), "metricDetail");
  }
  QQuickItem* bar(int day) const {
    QQuickItem* column = item("workloadDay." + QString::number(day));
    return column ? column->findChild<QQuickItem*>("workloadBar") : nullptr;
  }
  /// The scene position of a bar's lower edge: the chart's baseline.
  double baselineOf(int day) const {
    QQuickItem* each = bar(day);
    return each->mapToScene({0, each->height()}).y();
  }
  std::vector<double> barHeights() const {
    std::vector<double> heights;
    for (int day = 0; day < 7; ++day) heights.push_back(bar(day)->height());
    return heights;
  }

  /// Changes the state file behind the model's back, as another writer would, and lets the
  /// model read it again.
  void editStoredDocument(const std::function<void(PersistedState&)>& change) {
    PersistedState document = stored();
    change(document);
    ++document.revision;
    LocalStore(folders.stateFile()).save(document);
    onModel([](AppModel& model) { model.refreshTasks(); });
  }

  [[nodiscard]] std::vector<PlanningProposal> storedProposals() const { return stored().proposals; }
};

TEST_F(ReviewViewTest, AnEmptyWeekShowsZerosAndTheEmptyTexts) {
  launch();
  openReview();
  EXPECT_TRUE(showsText("WEEKLY REVIEW"));
  EXPECT_TRUE(showsText("Learn from what you finished"));
  EXPECT_EQ(textOf(item("weekRange")), "Nov 16 – Nov 22");
  EXPECT_EQ(item("weekRange")->width(), 170);
  EXPECT_EQ(accessibleName(item("previousWeek")), "Previous week");
  EXPECT_EQ(accessibleName(item("nextWeek")), "Next week");
  EXPECT_EQ(metric("Completion"), "0%");
  EXPECT_EQ(metricDetail("Completion"), "0 of 0 tasks");
  EXPECT_EQ(metric("Planned"), "0h 0m");
  EXPECT_EQ(metricDetail("Planned"), "estimated work");
  EXPECT_EQ(metric("Focused"), "0h 0m");
  EXPECT_EQ(metricDetail("Focused"), "recorded time");
  EXPECT_EQ(metric("Carry-over"), "0");
  EXPECT_EQ(metricDetail("Carry-over"), "unfinished tasks");
  EXPECT_TRUE(showsText("Daily workload"));
  EXPECT_EQ(barHeights(), std::vector<double>(7, 3.0));
  EXPECT_EQ(childText(item("workloadDay.0"), "workloadDayLabel"), "16 Mon");
  EXPECT_TRUE(
      showsText("Generate up to three practical schedule improvements from this week's facts."));
  EXPECT_TRUE(showsText("Nothing completed in this week yet."));
  EXPECT_NE(button("Generate"), nullptr);
  window->resize(1040, 780);
  screenshot("review-empty");
}

TEST_F(ReviewViewTest, ARateOf0999ReadsNinetyNinePercentNeverAHundred) {
  std::vector<FocusTask> tasks;
  for (int i = 0; i < 999; ++i)
    tasks.push_back(completedTask("Done " + std::to_string(i), kMonday, 60));
  tasks.push_back(makeTask().titled("Still open").plannedOn(kMonday));
  launch(tasks);
  openReview();
  EXPECT_EQ(metric("Completion"), "99%");
  EXPECT_EQ(metricDetail("Completion"), "999 of 1000 tasks");
  EXPECT_EQ(metric("Carry-over"), "1");
}

TEST_F(ReviewViewTest, ADayWithoutAnEntryInTheWorkloadStandsThreeHigh) {
  // Tuesday holds 100 open minutes; Wednesday holds only a finished task, so it has no entry.
  launch({makeTask().titled("Draft the plan").plannedOn(kTuesday).estimated(100),
          completedTask("Filed the notes", kWednesday, 600)});
  openReview();
  EXPECT_EQ(bar(1)->height(), 20);
  EXPECT_EQ(bar(2)->height(), 3);
  EXPECT_EQ(bar(0)->height(), 3);
  for (int day = 1; day < 7; ++day) EXPECT_EQ(baselineOf(day), baselineOf(0));
  EXPECT_EQ(bar(0)->parentItem()->height(), 120);
}

TEST_F(ReviewViewTest, ADayOfMoreThan600MinutesMakesTheChartTallerOnTheSameBaseline) {
  launch({makeTask().titled("Marathon").plannedOn(kThursday).estimated(900),
          makeTask().titled("Short one").plannedOn(kMonday).estimated(50)});
  openReview();
  EXPECT_EQ(bar(3)->height(), 180);
  EXPECT_EQ(bar(0)->height(), 10);
  EXPECT_EQ(bar(0)->parentItem()->height(), 180);
  for (int day = 1; day < 7; ++day) EXPECT_EQ(baselineOf(day), baselineOf(0));
}

TEST_F(ReviewViewTest, AProposalForADeletedTaskReadsTaskAndCanStillBeDismissed) {
  const FocusTask task = skippedTwice(makeTask().titled("Clean the garage").plannedOn(kTuesday));
  launch({task});
  openReview();
  clickButton("Generate");
  ASSERT_NE(item("proposalRow.Clean the garage"), nullptr);

  editStoredDocument([&](PersistedState& document) { std::erase(document.tasks, task); });
  QQuickItem* row = item("proposalRow.Task");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(childText(row, "proposalTask"), "Task");
  EXPECT_EQ(childText(row, "proposalReason"), "This task has been skipped repeatedly");

  clickButton("Dismiss");
  EXPECT_EQ(item("proposalRow.Task"), nullptr);
  EXPECT_FALSE(showsText("Dismiss all"));
  ASSERT_EQ(storedProposals().size(), 1U);
  EXPECT_EQ(storedProposals()[0].status, ProposalStatus::dismissed);
  EXPECT_FALSE(dashboard->alertShown());
}

TEST_F(ReviewViewTest, AProposalFromATaskWithoutAPlannedDayReadsUnscheduledToItsDay) {
  const FocusTask task = makeTask().titled("Someday errand");
  launch({task});
  editStoredDocument([&](PersistedState& document) {
    document.proposals.push_back(PlanningProposal{
        .kind = ProposalKind::reschedule,
        .taskID = task.id,
        .reason = "This task has been skipped repeatedly",
        .suggestedPlannedDay = kSaturday,
        .createdAt = kTestNow,
    });
  });
  openReview();
  EXPECT_EQ(childText(item("proposalRow.Someday errand"), "proposalChange"),
            "Unscheduled → Nov 21");
}

TEST_F(ReviewViewTest, ASkippedTaskWithoutADayIsProposedToStayUnscheduled) {
  launch({skippedTwice(makeTask().titled("Someday errand"))});
  openReview();
  clickButton("Generate");
  EXPECT_EQ(childText(item("proposalRow.Someday errand"), "proposalChange"),
            "Unscheduled → Unscheduled");
}

TEST_F(ReviewViewTest, MovingToTheNextWeekAndBackRestoresTheSameFigures) {
  launch({makeTask().titled("Plan the launch").plannedOn(kTuesday).estimated(200),
          makeTask().titled("Write copy").plannedOn(kThursday).estimated(45),
          completedTask("Ship the beta", kMonday, 5400)});
  openReview();
  const auto figures = [this] {
    return std::vector<QString>{metric("Completion"), metricDetail("Completion"),
                                metric("Planned"),    metric("Focused"),
                                metric("Carry-over"), textOf(item("weekRange"))};
  };
  const std::vector<QString> before = figures();
  const std::vector<double> barsBefore = barHeights();
  EXPECT_EQ(before, (std::vector<QString>{"33%", "1 of 3 tasks", "4h 35m", "1h 30m", "2",
                                          "Nov 16 – Nov 22"}));
  EXPECT_NE(item("completedRow.Ship the beta"), nullptr);

  click(item("nextWeek"));
  EXPECT_EQ(textOf(item("weekRange")), "Nov 23 – Nov 29");
  EXPECT_EQ(metric("Completion"), "0%");
  EXPECT_EQ(barHeights(), std::vector<double>(7, 3.0));
  EXPECT_TRUE(showsText("Nothing completed in this week yet."));

  click(item("previousWeek"));
  EXPECT_EQ(figures(), before);
  EXPECT_EQ(barHeights(), barsBefore);
  EXPECT_NE(item("completedRow.Ship the beta"), nullptr);

  // No limit either way, into the past as into the future.
  for (int week = 0; week < 3; ++week) click(item("previousWeek"));
  EXPECT_EQ(textOf(item("weekRange")), "Oct 26 – Nov 1");
}

TEST_F(ReviewViewTest, WithoutPendingProposalsNeitherDismissAllNorApproveAllExist) {
  launch({makeTask().titled("Big one").plannedOn(kTuesday).estimated(300),
          makeTask().titled("Other one").plannedOn(kTuesday).estimated(200)});
  openReview();
  EXPECT_FALSE(showsText("Dismiss all"));
  EXPECT_FALSE(showsText("Approve all"));

  clickButton("Generate");
  EXPECT_TRUE(showsText("Dismiss all"));
  EXPECT_TRUE(showsText("Approve all"));
  EXPECT_FALSE(
      showsText("Generate up to three practical schedule improvements from this week's facts."));

  clickButton("Dismiss all");
  EXPECT_FALSE(showsText("Dismiss all"));
  EXPECT_FALSE(showsText("Approve all"));
  EXPECT_TRUE(
      showsText("Generate up to three practical schedule improvements from this week's facts."));
}

TEST_F(ReviewViewTest, GenerateThenApproveMovesTheStoredTaskToTheSuggestedDay) {
  const FocusTask big = makeTask().titled("Big one").plannedOn(kTuesday).estimated(300);
  const FocusTask other = makeTask().titled("Other one").plannedOn(kTuesday).estimated(200);
  launch({big, other});
  openReview();
  clickButton("Generate");
  QQuickItem* row = item("proposalRow.Big one");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(childText(row, "proposalReason"), "Move work from an overloaded day");
  EXPECT_EQ(childText(row, "proposalChange"), "Nov 17 → Nov 18");
  EXPECT_EQ(buttonsIn(row), (std::vector<QString>{"Dismiss", "Approve"}));

  click(item("approve.Big one"));
  EXPECT_EQ(storedTask(big.id)->plannedDay, kWednesday);
  EXPECT_EQ(storedTask(other.id)->plannedDay, kTuesday);
  EXPECT_EQ(storedProposals()[0].status, ProposalStatus::approved);
  EXPECT_EQ(item("proposalRow.Big one"), nullptr);
  // The chart follows: Tuesday keeps 200 minutes, Wednesday takes 300.
  EXPECT_EQ(bar(1)->height(), 40);
  EXPECT_EQ(bar(2)->height(), 60);
}

TEST_F(ReviewViewTest, DismissRemovesTheRowAndLeavesTheTaskWhereItWas) {
  const FocusTask task = skippedTwice(makeTask().titled("Call the bank").plannedOn(kMonday));
  launch({task});
  openReview();
  clickButton("Generate");
  ASSERT_NE(item("proposalRow.Call the bank"), nullptr);
  click(item("dismiss.Call the bank"));
  EXPECT_EQ(item("proposalRow.Call the bank"), nullptr);
  EXPECT_EQ(storedTask(task.id)->plannedDay, kMonday);
  EXPECT_EQ(storedProposals()[0].status, ProposalStatus::dismissed);
}

TEST_F(ReviewViewTest, ApproveAllMovesEveryProposedTask) {
  const FocusTask first = skippedTwice(makeTask().titled("First").plannedOn(kMonday));
  const FocusTask second = skippedTwice(makeTask().titled("Second").plannedOn(kThursday));
  launch({first, second});
  openReview();
  clickButton("Generate");
  clickButton("Approve all");
  EXPECT_EQ(storedTask(first.id)->plannedDay, kTuesday);
  EXPECT_EQ(storedTask(second.id)->plannedDay, (LocalDay{2026, 11, 20}));
  EXPECT_FALSE(showsText("Approve all"));
}

TEST_F(ReviewViewTest, ApprovingAfterTheTaskMovedShowsTheAlertAndKeepsTheRow) {
  const FocusTask task = skippedTwice(makeTask().titled("Water the plants").plannedOn(kMonday));
  launch({task});
  openReview();
  clickButton("Generate");
  onModel([&](AppModel& model) { model.moveTask(task, kThursday); });
  click(item("approve.Water the plants"));
  EXPECT_EQ(textOf(item("errorAlertMessage")),
            "The task changed after this recommendation was created. Generate a new review.");
  EXPECT_EQ(storedTask(task.id)->plannedDay, kThursday);
  EXPECT_NE(item("proposalRow.Water the plants"), nullptr);
}

TEST_F(ReviewViewTest, CompletedTasksShowTheirFocusTimeInTheOrderTheyWereFinished) {
  FocusTask early = completedTask("Morning stand-up", kMonday, 900);
  early.completedAt = kTestNow.advanced(-86400);
  launch({completedTask("Send the invoice", kSaturday, 1500), early});
  openReview();
  EXPECT_FALSE(showsText("Nothing completed in this week yet."));
  QQuickItem* first = item("completedRow.Morning stand-up");
  QQuickItem* second = item("completedRow.Send the invoice");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_LT(first->mapToScene({0, 0}).y(), second->mapToScene({0, 0}).y());
  EXPECT_EQ(childText(first, "completedElapsed"), "15:00");
  EXPECT_EQ(childText(second, "completedElapsed"), "25:00");
}

TEST_F(ReviewViewTest, ABusyWeek) {
  launch({makeTask()
              .titled("Finish the quarterly report")
              .plannedOn(kMonday)
              .estimated(420)
              .withPriority(TaskPriority::critical),
          makeTask().titled("Prepare the workshop").plannedOn(kMonday).estimated(120),
          skippedTwice(makeTask().titled("Book the dentist").plannedOn(kTuesday).estimated(15)),
          makeTask().titled("Plan next sprint").plannedOn(kWednesday).estimated(90),
          makeTask().titled("Write the newsletter").plannedOn(kThursday).estimated(150),
          makeTask().titled("Clear the inbox").plannedOn(kSaturday).estimated(45),
          completedTask("Morning stand-up", kMonday, 900),
          completedTask("Review the budget", kTuesday, 3720),
          completedTask("Send the invoice", kSaturday, 1500)});
  openReview();
  clickButton("Generate");
  EXPECT_EQ(metric("Completion"), "33%");
  EXPECT_NE(item("proposalRow.Finish the quarterly report"), nullptr);
  EXPECT_NE(item("proposalRow.Book the dentist"), nullptr);
  window->resize(1040, 1320);
  screenshot("review-busy");
}

}  // namespace
}  // namespace brindlet::testing

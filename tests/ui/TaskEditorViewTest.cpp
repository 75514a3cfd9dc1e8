// The task editor sheet, opened from the queue and driven through its controls.

#include <gtest/gtest.h>

#include <QTest>

#include "UiFixture.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

QString textOf(QQuickItem* item) { return item ? item->property("text").toString() : QString(); }

class EditorTest : public UiTest {
 protected:
  void openEditorOf(const FocusTask& task) {
    launch({task});
    click(item(QStringLiteral("edit.") + QString::fromStdString(task.title)));
    ASSERT_NE(item("editorTitle"), nullptr);
    ASSERT_NE(dashboard->draft(), nullptr);
  }
  void save() {
    clickButton("Save");
    EXPECT_EQ(item("editorTitle"), nullptr);
  }
};

TEST_F(EditorTest, ATitleOfOnlySpacesLeavesSaveDisabled) {
  openEditorOf(makeTask().titled("Water the plants").plannedOn(kSaturday));
  EXPECT_TRUE(item("editorSave")->isEnabled());
  click(item("editorTitle"));
  QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
  type("   ");
  EXPECT_EQ(dashboard->draft()->title(), "   ");
  EXPECT_FALSE(item("editorSave")->isEnabled());
}

TEST_F(EditorTest, NinetySecondsOfFocusReadOneMinuteAndSaveAsSixtySeconds) {
  FocusTask task = makeTask().titled("Stretch").plannedOn(kSaturday);
  task.accumulatedFocusSeconds = 90;
  openEditorOf(task);
  EXPECT_EQ(textOf(item("timeSpentStepper.text")), "Time spent: 0h 1m");
  save();
  EXPECT_EQ(storedTask(task.id)->accumulatedFocusSeconds, 60.0);
}

TEST_F(EditorTest, ATaskWithoutEstimateKeepsNoneWhenSavedAndOneStepUpGivesThirty) {
  const FocusTask task = makeTask().titled("Tidy the desk").plannedOn(kSaturday);
  openEditorOf(task);
  EXPECT_EQ(textOf(item("estimateStepper.text")), "25 min");
  save();
  EXPECT_FALSE(storedTask(task.id)->estimatedMinutes.has_value());

  click(item("edit.Tidy the desk"));
  click(item("estimateStepper.up"));
  EXPECT_EQ(textOf(item("estimateStepper.text")), "30 min");
  save();
  EXPECT_EQ(storedTask(task.id)->estimatedMinutes, 30);
}

TEST_F(EditorTest, SwitchingRemindMeOffAndOnAgainLeavesItOff) {
  FocusTask task = makeTask().titled("Call the bank").plannedOn(kSaturday);
  task.reminder = TaskReminder{.isEnabled = true, .remindTenMinutesBefore = true};
  openEditorOf(task);
  EXPECT_TRUE(item("reminderSwitch")->property("checked").toBool());
  EXPECT_NE(item("tenMinutesSwitch"), nullptr);
  click(item("reminderSwitch"));
  EXPECT_FALSE(item("reminderSwitch")->property("checked").toBool());
  EXPECT_EQ(item("tenMinutesSwitch"), nullptr);
  click(item("reminderSwitch"));
  EXPECT_FALSE(item("reminderSwitch")->property("checked").toBool());
  ASSERT_TRUE(dashboard->draft()->task().reminder.has_value());
  EXPECT_EQ(*dashboard->draft()->task().reminder, TaskReminder{.isEnabled = false});
}

TEST_F(EditorTest, SwitchingOnAStartOffersTheMomentTheSheetWasOpened) {
  const FocusTask task = makeTask().titled("Pick up parcel").plannedOn(kSaturday);
  openEditorOf(task);
  const Instant opened = clock->now();
  clock->advance(600);
  EXPECT_EQ(item("startPicker"), nullptr);
  click(item("scheduleSwitch"));
  ASSERT_NE(item("startPicker"), nullptr);
  EXPECT_EQ(dashboard->draft()->startInstant(), opened);
  EXPECT_EQ(item("startHour")->property("value").toInt(), 9);
  EXPECT_EQ(item("startMinute")->property("value").toInt(), 30);
  screenshot("editor");
}

TEST_F(EditorTest, TimeSpentAboveADayIsKeptUntilTheStepperIsPressed) {
  FocusTask task = makeTask().titled("Marathon").plannedOn(kSaturday);
  task.accumulatedFocusSeconds = 1500 * 60;
  openEditorOf(task);
  EXPECT_EQ(textOf(item("timeSpentStepper.text")), "Time spent: 25h 0m");
  click(item("timeSpentStepper.up"));
  EXPECT_EQ(textOf(item("timeSpentStepper.text")), "Time spent: 24h 0m");
}

TEST_F(EditorTest, ChangingTheEstimateAndTheStartTimeChangesTheRowOnSave) {
  const FocusTask task =
      makeTask().titled("Write the newsletter").plannedOn(kSaturday).estimated(40);
  openEditorOf(task);
  click(item("estimateStepper.up"));
  click(item("estimateStepper.up"));
  click(item("scheduleSwitch"));
  QQuickItem* hour = item("startHour");
  // The spin box's up indicator sits at its right end.
  frame();
  QTest::mouseClick(window, Qt::LeftButton, {},
                    hour->mapToScene(QPointF(hour->width() - 8, hour->height() / 2)).toPoint());
  settle();
  EXPECT_EQ(hour->property("value").toInt(), 10);
  save();
  const FocusTask saved = *storedTask(task.id);
  EXPECT_EQ(saved.estimatedMinutes, 50);
  ASSERT_TRUE(saved.scheduledStart.has_value());
  EXPECT_EQ(*saved.scheduledStart, kTestNow.advanced(3600));
  EXPECT_EQ(textOf(item("taskRow.Write the newsletter")->findChild<QQuickItem*>("rowEstimate")),
            "50 min");
}

TEST_F(EditorTest, EveryRowOfTheSheetStaysWithinItsEdges) {
  openEditorOf(makeTask().titled("Plan the trip").plannedOn(kSaturday));
  click(item("scheduleSwitch"));
  frame();
  QQuickItem* sheet = item("editorTitle")->parentItem();
  while (sheet && !QByteArray(sheet->metaObject()->className()).contains("PopupItem")) {
    sheet = sheet->parentItem();
  }
  ASSERT_NE(sheet, nullptr);
  const QRectF edges = sheet->mapRectToScene(QRectF(0, 0, sheet->width(), sheet->height()));
  for (const char* name : {"editorTitle", "estimateStepper", "startPicker", "startMinute",
                           "editorBlocking", "editorSave"}) {
    QQuickItem* part = item(name);
    ASSERT_NE(part, nullptr) << name;
    const QRectF place = part->mapRectToScene(QRectF(0, 0, part->width(), part->height()));
    EXPECT_TRUE(edges.contains(place)) << name;
  }
}

TEST_F(EditorTest, EscapeClosesTheSheetWithoutSaving) {
  const FocusTask task = makeTask().titled("Renew passport").plannedOn(kSaturday).estimated(20);
  openEditorOf(task);
  click(item("estimateStepper.up"));
  pressKey(Qt::Key_Escape);
  EXPECT_EQ(item("editorTitle"), nullptr);
  EXPECT_EQ(storedTask(task.id)->estimatedMinutes, 20);
}

TEST_F(EditorTest, CancelLeavesTheStoredTaskAsItWas) {
  const FocusTask task = makeTask().titled("Renew passport").plannedOn(kSaturday).estimated(20);
  openEditorOf(task);
  click(item("estimateStepper.up"));
  clickButton("Cancel");
  EXPECT_EQ(item("editorTitle"), nullptr);
  EXPECT_EQ(storedTask(task.id)->estimatedMinutes, 20);
  EXPECT_FALSE(host->state().selectedTask.has_value());
}

}  // namespace
}  // namespace brindlet::testing

// The tray item's label and menu.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>

#include "UiFixture.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

using MenuBarItemTest = UiTest;

QStringList lines(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

void trigger(ui::MenuBarItem& menuBar, const QString& text) {
  for (QAction* action : menuBar.menu().actions()) {
    if (action->text() == text && action->isEnabled()) {
      action->trigger();
      return;
    }
  }
  ADD_FAILURE() << "no menu entry " << text.toStdString();
}

TEST_F(MenuBarItemTest, WithNeitherTaskNorSessionTheMenuOffersOpenProtectionOffAndQuit) {
  launch();
  EXPECT_EQ(menuBar->entries(), lines({"Open Brindlet", "---", "·Protection Off", "---", "Quit"}));
  EXPECT_EQ(menuBar->labelText(), "");
  EXPECT_EQ(menuBar->iconSymbol(), "shield");
}

TEST_F(MenuBarItemTest, WithAPausedTaskAndAStrictSessionOnlyResumeAndNoWayOut) {
  FocusTask task = makeTask().titled("Write the report").plannedOn(kSaturday);
  task.status = TaskStatus::paused;
  task.startedAt = kTestNow;
  task.accumulatedFocusSeconds = 90;
  launch({task});
  onModel([](AppModel& model) {
    model.setSelectedMode(SessionMode::strict);
    model.start();
  });
  clock->advance(90);
  onModel([](AppModel& model) { model.heartbeat(); });

  EXPECT_EQ(menuBar->entries(),
            lines({"Open Brindlet", "---", "·Write the report", "·01:30 focused", "Resume Task",
                   "---", "·23:30 remaining", "·Strict mode", "---", "Quit"}));
  EXPECT_EQ(menuBar->iconSymbol(), "shield.fill");

  trigger(*menuBar, "Resume Task");
  settle();
  EXPECT_EQ(storedTask(task.id)->status, TaskStatus::active);
}

TEST_F(MenuBarItemTest, TheLabelIsTheTaskTimeOverTheCountdownUntilTheTaskEnds) {
  launch({makeTask().titled("Plan the sprint").plannedOn(kSaturday)});
  // A strict session outlasts the task, so its countdown is left when the task ends.
  onModel([](AppModel& model) {
    model.setSelectedMode(SessionMode::strict);
    model.start();
  });
  EXPECT_EQ(menuBar->labelText(), "25:00");

  clickButton("Start Focus");
  clock->advance(65);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_EQ(menuBar->labelText(), "01:05");

  clickButton("Done");
  EXPECT_EQ(menuBar->labelText(), "23:55");
}

TEST_F(MenuBarItemTest, WithTheWindowClosedTheMenuTextsStandStill) {
  launch({makeTask().titled("Read the brief").plannedOn(kSaturday)});
  onModel([](AppModel& model) { model.start(); });
  clickButton("Start Focus");
  clock->advance(30);
  onModel([](AppModel& model) { model.heartbeat(); });
  const QStringList before = menuBar->entries();
  EXPECT_TRUE(before.contains("·00:30 focused"));
  EXPECT_TRUE(before.contains("·24:30 remaining"));

  window->close();
  settle();
  EXPECT_FALSE(host->heartbeatRunning());
  clock->advance(300);
  settle();
  EXPECT_EQ(menuBar->entries(), before);
  EXPECT_EQ(menuBar->labelText(), "00:30");
}

TEST_F(MenuBarItemTest, WithoutATrayNoMenuIsMadeUntilOneIsAskedFor) {
  launch({makeTask().titled("Read the brief").plannedOn(kSaturday)});
  clickButton("Start Focus");
  EXPECT_TRUE(QApplication::allWidgets().isEmpty());

  EXPECT_EQ(menuBar->menu().actions().size(), menuBar->entries().size());
  EXPECT_FALSE(QApplication::allWidgets().isEmpty());
}

TEST_F(MenuBarItemTest, AMenuMadeLateReadsAsTheModelStandsAndFollowsIt) {
  launch({makeTask().titled("Read the brief").plannedOn(kSaturday)});
  clickButton("Start Focus");
  QStringList texts;
  for (const QAction* action : menuBar->menu().actions()) texts << action->text();
  EXPECT_TRUE(texts.contains("Pause Task"));

  trigger(*menuBar, "Pause Task");
  settle();
  texts.clear();
  for (const QAction* action : menuBar->menu().actions()) texts << action->text();
  EXPECT_TRUE(texts.contains("Resume Task"));
  EXPECT_FALSE(texts.contains("Pause Task"));
}

TEST_F(MenuBarItemTest, OpenBrindletAsksForTheWindow) {
  launch();
  bool asked = false;
  QObject::connect(menuBar.get(), &ui::MenuBarItem::openRequested, [&] { asked = true; });
  trigger(*menuBar, "Open Brindlet");
  EXPECT_TRUE(asked);
}

}  // namespace
}  // namespace brindlet::testing

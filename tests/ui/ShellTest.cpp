// The main window's shell: sidebar and destinations, footer, alert and the heartbeat.

#include <gtest/gtest.h>

#include <QColor>
#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <atomic>

#include "MainWindowLoad.h"
#include "UiFixture.h"
#include "app/AppModel.h"
#include "persistence/LocalStore.h"

namespace brindlet::testing {
namespace {

using ShellTest = UiTest;

QColor dotColour(QQuickItem* dot) { return dot->property("color").value<QColor>(); }

TEST_F(ShellTest, EachDestinationShowsItsOwnScreen) {
  launch();
  const std::vector<std::pair<QString, QString>> screens{
      {"Week", "weekView"},       {"Review", "reviewView"},          {"Blocking", "blockingView"},
      {"Devices", "devicesView"}, {"Data Safety", "dataSafetyView"}, {"Today", "todayView"}};
  for (const auto& [title, view] : screens) {
    click(item("destination." + title));
    EXPECT_NE(item(view), nullptr) << title.toStdString();
    EXPECT_EQ(item(view == "todayView" ? "weekView" : "todayView"), nullptr) << title.toStdString();
  }
}

TEST_F(ShellTest, TheModelIsComposedOnItsOwnThreadBeforeItsFirstJob) {
  PersistedState document = PersistedState::initial();
  document.tasks = {makeTask().titled("Composed elsewhere").plannedOn(kSaturday)};
  LocalStore(folders.stateFile()).save(document);
  std::atomic<bool> composedOnThisThread = true;
  ui::ModelHost composing([&] {
    composedOnThisThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    return AppModel::compose(composition());
  });
  composing.setWindowShown(true);
  composing.settle();
  composing.setWindowShown(false);
  EXPECT_FALSE(composedOnThisThread);
  ASSERT_EQ(composing.state().tasks().size(), 1U);
  EXPECT_EQ(composing.state().tasks().front().title, "Composed elsewhere");
}

TEST_F(ShellTest, AStartUpPassThatFinishesWithinThePatienceIsOnShowWhenTheWaitEnds) {
  launch({makeTask().titled("Recovered in time").plannedOn(kSaturday)});
  ui::ModelHost starting([&] { return AppModel::compose(composition()); });
  starting.setWindowShown(true);
  EXPECT_TRUE(starting.settle(ui::kModelPatienceAtStart));
  EXPECT_EQ(starting.recoverCount(), 1);
  ASSERT_EQ(starting.state().selectedDayTasks().size(), 1U);
  EXPECT_EQ(starting.state().selectedDayTasks().front().title, "Recovered in time");
  starting.setWindowShown(false);
  starting.settle();
}

TEST_F(ShellTest, AStartUpPassBegunBeforeTheWindowLoadsIsNotRepeatedWhenItShows) {
  launch({makeTask().titled("On show from the first frame").plannedOn(kSaturday)});
  ui::ModelHost early([&] { return AppModel::compose(composition()); });
  early.setWindowShown(true);
  early.settle();
  EXPECT_EQ(early.recoverCount(), 1);
  ASSERT_EQ(early.state().selectedDayTasks().size(), 1U);
  EXPECT_EQ(early.state().selectedDayTasks().front().title, "On show from the first frame");

  early.setWindowShown(true);
  early.settle();
  EXPECT_EQ(early.recoverCount(), 1);
  early.setWindowShown(false);
  early.setWindowShown(true);
  early.settle();
  EXPECT_EQ(early.recoverCount(), 2);
  early.setWindowShown(false);
  early.settle();
}

TEST_F(ShellTest, WithTheSelectionClearedTheDetailShowsTodayAndNoRowIsHighlighted) {
  launch();
  click(item("destination.Today"), Qt::ControlModifier);
  EXPECT_EQ(dashboard->destination(), -1);
  EXPECT_NE(item("todayView"), nullptr);
  for (const char* title : {"Today", "Week", "Review", "Blocking", "Devices", "Data Safety"}) {
    EXPECT_FALSE(item(QStringLiteral("destination.") + title)->property("selected").toBool())
        << title;
  }
}

TEST_F(ShellTest, WithProtectionErrorAndActiveBlockingTheFooterAsksForAttention) {
  launch();
  screenshot("footer-ready");
  EXPECT_EQ(item("footerCaption")->property("text").toString(), "Ready");

  AppModelState state = host->state();
  state.protectionStatus = ProtectionStatus::active;
  dashboard->present(state);
  frame();
  EXPECT_EQ(item("footerCaption")->property("text").toString(), "Blocking active");
  screenshot("footer-active");

  state.protectionError = "The hosts file no longer holds the block for this session.";
  dashboard->present(state);
  frame();
  EXPECT_EQ(item("footerCaption")->property("text").toString(), "Protection needs attention");
  EXPECT_EQ(dotColour(item("footerDot")), QColor("#ec8a16"));
  EXPECT_TRUE(showsText("The hosts file no longer holds the block for this session."));
  EXPECT_NE(button("Reapply protection"), nullptr);
  screenshot("footer-attention");
}

TEST_F(ShellTest, ClosingTheWindowStopsTheHeartbeatAndReopeningRecoversFirst) {
  launch();
  EXPECT_EQ(host->recoverCount(), 1);
  EXPECT_TRUE(host->heartbeatRunning());

  window->close();
  settle();
  EXPECT_FALSE(host->heartbeatRunning());
  EXPECT_EQ(host->recoverCount(), 1);

  window->show();
  settle();
  EXPECT_EQ(host->recoverCount(), 2);
  EXPECT_TRUE(host->heartbeatRunning());
}

TEST_F(ShellTest, TheHeartbeatAdvancesTheRunningTimeWhileTheWindowIsShown) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  clickButton("Start Focus");
  clock->advance(42);
  host->setHeartbeatInterval(std::chrono::milliseconds(1));
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        QCoreApplication::processEvents();
        return dashboard->cardElapsedText() == "00:42";
      },
      2000));
}

TEST_F(ShellTest, ABlankErrorTextStillPresentsTheAlert) {
  launch();
  AppModelState state = host->state();
  state.editorError = "";
  dashboard->present(state);
  frame();
  ASSERT_NE(item("errorAlertMessage"), nullptr);
  EXPECT_EQ(item("errorAlertMessage")->property("text").toString(), "");
  clickButton("OK");
  EXPECT_EQ(item("errorAlertMessage"), nullptr);
}

TEST_F(ShellTest, AnErrorShowsTheAlertWithItsTextAndOkClearsIt) {
  launch();
  click(item("quickAddField"));
  pressKey(Qt::Key_Return);
  ASSERT_NE(item("errorAlertMessage"), nullptr);
  EXPECT_EQ(item("errorAlertMessage")->property("text").toString(), "Enter a task title.");
  screenshot("alert");
  clickButton("OK");
  EXPECT_EQ(item("errorAlertMessage"), nullptr);
  EXPECT_FALSE(host->state().editorError.has_value());
}

TEST_F(ShellTest, EscapeClosesTheAlertAndClearsTheError) {
  launch();
  click(item("quickAddField"));
  pressKey(Qt::Key_Return);
  ASSERT_NE(item("errorAlertMessage"), nullptr);
  pressKey(Qt::Key_Escape);
  EXPECT_EQ(item("errorAlertMessage"), nullptr);
  EXPECT_FALSE(host->state().editorError.has_value());
}

}  // namespace
}  // namespace brindlet::testing

// The main window's load and what waits for its first frame: the fonts readied ahead are the ones
// its opening screen sets text in, the rest is readied only while the window's files are read, and
// work left for after the first frame runs exactly once.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFont>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <future>
#include <vector>

#include "MainWindowLoad.h"
#include "MenuBarItem.h"
#include "SymbolIcon.h"
#include "UiFixture.h"
#include "persistence/LocalStore.h"

namespace brindlet::testing {
namespace {

using MainWindowLoadTest = UiTest;

// Hidden texts count too: they are laid out, and so load their fonts, as they are made.
void collectTextStyles(const QQuickItem& item, std::vector<ui::TextStyle>& styles) {
  const QVariant font = item.property("font");
  if (font.isValid()) {
    const auto value = font.value<QFont>();
    styles.push_back({value.pixelSize(), static_cast<QFont::Weight>(value.weight())});
  }
  for (const QQuickItem* child : item.childItems()) collectTextStyles(*child, styles);
}

class OpeningScreenTest : public MainWindowLoadTest {
 protected:
  void launchAFullDay() {
    FocusTask reminded = makeTask().titled("Call the bank").plannedOn(kSaturday).estimated(15);
    reminded.scheduledStart = kTestNow.advanced(2 * 3600.0);
    reminded.reminder = TaskReminder{.isEnabled = true};
    FocusTask completed = makeTask().titled("Morning stand-up").plannedOn(kSaturday);
    completed.status = TaskStatus::completed;
    completed.completedAt = kTestNow;
    launch(
        {makeTask()
             .titled("Finish the quarterly report")
             .plannedOn(kSaturday)
             .estimated(90)
             .withPriority(TaskPriority::critical),
         makeTask().titled("Plan next week").plannedOn(kSaturday).withPriority(TaskPriority::low),
         reminded, completed});
  }

  [[nodiscard]] std::vector<ui::TextStyle> textStylesOnScreen() const {
    std::vector<ui::TextStyle> styles;
    collectTextStyles(*window->contentItem(), styles);
    return styles;
  }
};

bool isReadied(const ui::TextStyle& style) {
  const auto readied = ui::openingScreenTextStyles();
  return std::find(readied.begin(), readied.end(), style) != readied.end();
}

TEST_F(OpeningScreenTest, EveryTextOnTheOpeningScreenIsSetInAFontReadiedAheadOfIt) {
  launchAFullDay();
  const std::vector<ui::TextStyle> styles = textStylesOnScreen();
  ASSERT_GT(styles.size(), 20U);
  for (const ui::TextStyle& style : styles) {
    EXPECT_TRUE(isReadied(style)) << "a text at " << style.pixelSize << " px, weight "
                                  << style.weight << ", is not readied ahead";
  }
}

TEST_F(OpeningScreenTest, EveryFontReadiedAheadIsOneTheOpeningScreenSetsTextIn) {
  launchAFullDay();
  const std::vector<ui::TextStyle> styles = textStylesOnScreen();
  for (const ui::TextStyle& readied : ui::openingScreenTextStyles()) {
    EXPECT_TRUE(std::find(styles.begin(), styles.end(), readied) != styles.end())
        << "no text at " << readied.pixelSize << " px, weight " << readied.weight;
  }
}

TEST_F(MainWindowLoadTest, TheLoadedWindowIsTheMainWindowWithTheDayOnShow) {
  launch({makeTask().titled("Water the plants").plannedOn(kSaturday)});
  EXPECT_EQ(window->title(), "Brindlet");
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Water the plants"});
}

// A disk that keeps the model from loading until it is let go; let go at the latest when the test
// ends, so that the model thread can always finish.
class StalledDisk {
 public:
  StalledDisk() : freed_(released_.get_future().share()) {}
  ~StalledDisk() { letGo(); }
  StalledDisk(const StalledDisk&) = delete;
  StalledDisk& operator=(const StalledDisk&) = delete;

  /// For the model thread to wait on; its own copy outlives this disk.
  [[nodiscard]] std::shared_future<void> freed() const { return freed_; }
  void letGo() {
    if (!letGo_) released_.set_value();
    letGo_ = true;
  }

 private:
  std::promise<void> released_;
  std::shared_future<void> freed_;
  bool letGo_ = false;
};

class HeldUpModelTest : public MainWindowLoadTest {
 protected:
  // The window and the tray item over a plan of one task, whose model is held up by `disk`.
  void launchBehind(const StalledDisk& disk) {
    PersistedState document = PersistedState::initial();
    document.tasks = {makeTask().titled("Behind a slow disk").plannedOn(kSaturday)};
    LocalStore(folders.stateFile()).save(document);
    openWindow([this, freed = disk.freed()] {
      freed.wait();
      return AppModel::compose(composition());
    });
  }

  void tearDownWindow() {
    host->setWindowShown(false);
    settle();
  }
};

TEST_F(HeldUpModelTest, AWindowWhoseModelIsHeldUpShowsAtOnceAndFillsInWhenTheModelIsReady) {
  StalledDisk disk;
  launchBehind(disk);
  QElapsedTimer waited;
  waited.start();
  EXPECT_FALSE(host->settle(std::chrono::milliseconds(50)));
  EXPECT_GE(waited.elapsed(), 50);
  frame();
  screenshot("today-plan-unread");
  EXPECT_TRUE(queueTitles().empty());
  EXPECT_EQ(item("dayCleared"), nullptr) << "an unread plan shows as a cleared day";
  EXPECT_EQ(item("dayTitle")->property("text").toString().trimmed(), "");
  EXPECT_EQ(item("workload")->property("text").toString(), "");
  EXPECT_EQ(item("footerCaption")->parentItem()->opacity(), 0.0) << "protection shows as off";
  EXPECT_EQ(item("weekDay.5")->findChild<QQuickItem*>("weekDayCount")->property("text").toString(),
            "");

  disk.letGo();
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return queueTitles() == std::vector<QString>{"Behind a slow disk"}; }, 10000));
  EXPECT_EQ(host->recoverCount(), 1);
  EXPECT_EQ(item("dayTitle")->property("text").toString(), "Saturday, November 21");
  EXPECT_EQ(item("footerCaption")->parentItem()->opacity(), 1.0);
  EXPECT_EQ(item("weekDay.5")->findChild<QQuickItem*>("weekDayCount")->property("text").toString(),
            "1");
  tearDownWindow();
}

TEST_F(HeldUpModelTest, AnotherScreenChosenBeforeThePlanIsReadIsMadeOnceThePlanIsThere) {
  StalledDisk disk;
  launchBehind(disk);
  // Clicked without waiting for the model, which is held up.
  frame();
  QTest::mouseClick(window, Qt::LeftButton, {}, centreOf(item("destination.Week")).toPoint());
  frame();
  EXPECT_EQ(dashboard->destination(), 1);
  EXPECT_EQ(item("detail")->property("item").value<QObject*>(), nullptr)
      << "a screen shows a plan it has not read";

  disk.letGo();
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return item("detail")->property("item").value<QObject*>() != nullptr; }, 10000));
  EXPECT_TRUE(item("detail")->property("source").toUrl().toString().endsWith("WeekView.qml"));
  tearDownWindow();
}

TEST_F(HeldUpModelTest, TheTrayMenuClaimsNothingAboutTheTaskOrTheProtectionBeforeThePlanIsRead) {
  StalledDisk disk;
  launchBehind(disk);
  EXPECT_EQ(menuBar->entries(), (QStringList{"Open Brindlet", "---", "Quit"}));

  disk.letGo();
  const QStringList planned{"Open Brindlet", "---", "·Protection Off", "---", "Quit"};
  EXPECT_TRUE(QTest::qWaitFor([&] { return menuBar->entries() == planned; }, 10000));
  tearDownWindow();
}

int bundledIcons() {
  return static_cast<int>(QDir(QStringLiteral(":/icons")).entryList(QDir::Files).size());
}

TEST(ReadyForOpeningScreenTest, WhileTheWindowsFilesAreReadEveryBundledIconIsDrawnAhead) {
  int asked = 0;
  ui::readyForOpeningScreen([&asked] {
    ++asked;
    return true;
  });
  EXPECT_EQ(asked, 1 + bundledIcons()) << "once before the date formats, then before each icon";
  for (const int side : {12, 14, 16}) {
    EXPECT_TRUE(ui::SymbolIcon::isDrawn(QStringLiteral("circle"), QSize(side, side))) << side;
  }
}

TEST(ReadyForOpeningScreenTest, OnceTheWindowsFilesAreReadNothingButTheFontsIsReadiedAhead) {
  int asked = 0;
  ui::readyForOpeningScreen([&asked] {
    ++asked;
    return false;
  });
  EXPECT_EQ(asked, 1);
}

TEST(ReadyForOpeningScreenTest, TheReadyingStopsAtItsFirstStepAfterTheWindowsFilesAreRead) {
  int asked = 0;
  ui::readyForOpeningScreen([&asked] { return ++asked <= 3; });
  EXPECT_EQ(asked, 4);
}

TEST(AfterFirstFrameTest, WorkLeftForAfterTheFirstFrameRunsOnceWhenItIsOut) {
  QQuickWindow window;
  window.resize(200, 120);
  int runs = 0;
  int framesBefore = -1;
  int frames = 0;
  QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] { ++frames; });
  ui::afterFirstFrame(window, [&] {
    ++runs;
    framesBefore = frames;
  });
  QCoreApplication::processEvents();
  EXPECT_EQ(runs, 0);

  window.show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return runs > 0; }));
  EXPECT_EQ(framesBefore, 1);
  window.requestUpdate();
  ASSERT_TRUE(QTest::qWaitFor([&] { return frames >= 2; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(runs, 1);
}

TEST(AfterFirstFrameTest, WorkLeftForAfterTheFirstFrameStillRunsOnceWhenNoFrameComes) {
  QQuickWindow window;
  int runs = 0;
  ui::afterFirstFrame(
      window, [&] { ++runs; }, std::chrono::milliseconds(50));
  QCoreApplication::processEvents();
  EXPECT_EQ(runs, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, 2000));
  QTest::qWait(100);
  EXPECT_EQ(runs, 1);
}

TEST(AfterFirstFrameTest, AFrameBeforeThePatienceEndsLeavesNothingToRunAfterIt) {
  QQuickWindow window;
  window.resize(200, 120);
  int runs = 0;
  ui::afterFirstFrame(
      window, [&] { ++runs; }, std::chrono::milliseconds(1000));
  window.show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, 900));
  QTest::qWait(1200);
  EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace brindlet::testing

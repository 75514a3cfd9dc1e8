// The Week screen: the board of day columns, the unscheduled column and moving tasks between them.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QColor>
#include <QDeadlineTimer>
#include <QQmlComponent>
#include <QTest>
#include <algorithm>

#include "UiFixture.h"
#include "UiTexts.h"
#include "WeekScreen.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

constexpr LocalDay kMonday{2026, 11, 16};
constexpr LocalDay kWednesday{2026, 11, 18};
constexpr LocalDay kFriday{2026, 11, 20};
constexpr LocalDay kSunday{2026, 11, 22};

const QColor kOrange("#ec8a16");

QString textOf(QQuickItem* item) { return item ? item->property("text").toString() : QString(); }

void collectCards(QQuickItem* root, std::vector<QQuickItem*>& found) {
  if (!root || !root->isVisible()) return;
  if (root->objectName().startsWith(QStringLiteral("weekTask."))) found.push_back(root);
  for (QQuickItem* child : root->childItems()) collectCards(child, found);
}

QQuickItem* descendant(QQuickItem* root, const QString& objectName) {
  if (!root) return nullptr;
  for (QQuickItem* child : root->childItems()) {
    if (child->objectName() == objectName) return child;
    if (QQuickItem* found = descendant(child, objectName)) return found;
  }
  return nullptr;
}

class WeekViewTest : public UiTest {
 protected:
  /// Launches with these tasks and opens the Week screen, wide enough for the whole board.
  void openWeek(const std::vector<FocusTask>& tasks = {}) {
    launch(tasks);
    click(item(QStringLiteral("destination.Week")));
    ASSERT_NE(item(QStringLiteral("weekView")), nullptr);
    window->resize(2120, 900);
    frame();
  }

  [[nodiscard]] QString label(const LocalDay& day) const {
    return ui::qs(host->state().dayLabel(day));
  }

  [[nodiscard]] QQuickItem* column(const QString& title) const {
    return item(QStringLiteral("weekColumn.") + title);
  }
  [[nodiscard]] QQuickItem* column(const LocalDay& day) const { return column(label(day)); }

  [[nodiscard]] QString subtitleOf(QQuickItem* column) const {
    return textOf(descendant(column, QStringLiteral("weekColumnSubtitle")));
  }
  [[nodiscard]] QColor subtitleColour(QQuickItem* column) const {
    return descendant(column, QStringLiteral("weekColumnSubtitle"))
        ->property("color")
        .value<QColor>();
  }

  /// The titles of the cards in a column, top to bottom.
  [[nodiscard]] std::vector<QString> cardsIn(QQuickItem* column) const {
    std::vector<QQuickItem*> cards;
    collectCards(column, cards);
    std::sort(cards.begin(), cards.end(), [](QQuickItem* a, QQuickItem* b) {
      return a->mapToScene({0, 0}).y() < b->mapToScene({0, 0}).y();
    });
    std::vector<QString> titles;
    for (QQuickItem* card : cards) titles.push_back(card->property("title").toString());
    return titles;
  }

  /// A drag source of the test's own, made in the window, whose drag carries `text` the way the
  /// screens' rows and cards carry theirs.
  QQuickItem* dragSource(const QString& text) {
    QQmlComponent component(engine.get());
    component.setData(R"(
        import QtQuick
        Rectangle {
            id: source
            property string dragText
            property int dropResult: -1
            width: 120; height: 40; z: 100
            color: "tomato"
            Drag.active: handler.active
            Drag.source: source
            Drag.hotSpot.x: width / 2
            Drag.hotSpot.y: height / 2
            Drag.keys: ["text/plain"]
            Drag.mimeData: ({ "text/plain": source.dragText })
            DragHandler {
                id: handler
                onActiveChanged: if (!active) source.dropResult = source.Drag.drop()
            }
        })",
                      QUrl());
    auto* source = qobject_cast<QQuickItem*>(component.create());
    EXPECT_NE(source, nullptr) << component.errorString().toStdString();
    if (!source) return nullptr;
    source->setParent(window->contentItem());
    source->setParentItem(window->contentItem());
    source->setProperty("dragText", text);
    source->setPosition({300, 820});
    frame();
    return source;
  }
};

TEST_F(WeekViewTest, AnEmptyWeekShowsSevenDaysAndTheUnscheduledColumn) {
  openWeek();
  EXPECT_TRUE(showsText("WEEK PLAN"));
  EXPECT_TRUE(showsText("Arrange a realistic week"));
  EXPECT_NE(button("Today"), nullptr);
  for (const LocalDay& day : host->state().weekDays()) {
    QQuickItem* dayColumn = column(day);
    ASSERT_NE(dayColumn, nullptr) << label(day).toStdString();
    EXPECT_EQ(subtitleOf(dayColumn), "0h 0m");
    EXPECT_NE(item("Open " + label(day)), nullptr);
  }
  QQuickItem* unscheduled = column(QStringLiteral("Unscheduled"));
  ASSERT_NE(unscheduled, nullptr);
  EXPECT_EQ(subtitleOf(unscheduled), "Choose when to do it");
  // Monday first, the unscheduled column last, all equally wide.
  const qreal mondayX = column(kMonday)->mapToScene({0, 0}).x();
  EXPECT_LT(mondayX, column(kSunday)->mapToScene({0, 0}).x());
  EXPECT_LT(column(kSunday)->mapToScene({0, 0}).x(), unscheduled->mapToScene({0, 0}).x());
  EXPECT_EQ(column(kMonday)->width(), unscheduled->width());
  EXPECT_GE(unscheduled->height(), 470);
  window->resize(1040, 780);
  screenshot("week-empty");
}

TEST_F(WeekViewTest, ADayPlannedToCapacityIsNotOverloadedWhileOneMinuteMoreTurnsItOrange) {
  openWeek({makeTask().titled("Long build").plannedOn(kTuesday).estimated(300),
            makeTask().titled("Reviews").plannedOn(kTuesday).estimated(180),
            makeTask().titled("Migration").plannedOn(kThursday).estimated(300),
            makeTask().titled("Reports").plannedOn(kThursday).estimated(181)});
  QQuickItem* full = column(kTuesday);
  EXPECT_EQ(subtitleOf(full), "8h 0m");
  EXPECT_FALSE(full->property("overloaded").toBool());
  EXPECT_NE(subtitleColour(full), kOrange);

  QQuickItem* over = column(kThursday);
  EXPECT_EQ(subtitleOf(over), "8h 1m");
  EXPECT_TRUE(over->property("overloaded").toBool());
  EXPECT_EQ(subtitleColour(over), kOrange);
  const QColor background = over->property("color").value<QColor>();
  EXPECT_EQ(background.rgb(), kOrange.rgb());
  EXPECT_NEAR(background.alphaF(), 0.08, 0.01);
  EXPECT_NE(full->property("color").value<QColor>().rgb(), kOrange.rgb());
}

TEST_F(WeekViewTest, CompletedTasksStandInTheColumnWithoutCountingTowardsTheOverload) {
  FocusTask done = makeTask().titled("Wrapped up").plannedOn(kWednesday).estimated(200);
  done.status = TaskStatus::completed;
  done.completedAt = kTestNow;
  openWeek({makeTask().titled("Still open").plannedOn(kWednesday).estimated(400), done});
  QQuickItem* wednesday = column(kWednesday);
  EXPECT_EQ(subtitleOf(wednesday), "6h 40m");
  EXPECT_FALSE(wednesday->property("overloaded").toBool());
  EXPECT_EQ(cardsIn(wednesday), (std::vector<QString>{"Still open", "Wrapped up"}));
}

TEST_F(WeekViewTest, AnArchivedTaskWithoutADayStandsNowhereOnTheBoard) {
  FocusTask archived = makeTask().titled("Old idea");
  archived.status = TaskStatus::archived;
  FocusTask finished = makeTask().titled("Finished without a day");
  finished.status = TaskStatus::completed;
  finished.completedAt = kTestNow;
  openWeek({makeTask().titled("Someday"), archived, finished});
  EXPECT_EQ(cardsIn(column(QStringLiteral("Unscheduled"))),
            (std::vector<QString>{"Someday", "Finished without a day"}));
  EXPECT_EQ(item(QStringLiteral("weekTask.Old idea")), nullptr);
  EXPECT_FALSE(showsText("Old idea"));
}

TEST_F(WeekViewTest, ADropOfTextThatIsNoTaskIdIsRefusedAndChangesNothing) {
  const FocusTask task = makeTask().titled("Stay put").plannedOn(kMonday);
  openWeek({task});
  const std::int64_t revision = host->state().taskSnapshot.revision();

  QQuickItem* friday = column(kFriday);
  for (const QString& text :
       {QStringLiteral("not an id"), QStringLiteral("0F4C2A47-9D5B-4E0A-8C3B-1D2E3F405162")}) {
    QQuickItem* source = dragSource(text);
    drag(source, friday);
    // The drag did reach the column, and the column turned it away.
    EXPECT_TRUE(friday->contains(friday->mapFromScene(centreOf(source))));
    EXPECT_EQ(source->property("dropResult").toInt(), Qt::IgnoreAction) << text.toStdString();
  }

  EXPECT_EQ(host->state().taskSnapshot.revision(), revision);
  EXPECT_EQ(storedTask(task.id)->plannedDay, kMonday);
  EXPECT_EQ(cardsIn(friday), std::vector<QString>{});
  EXPECT_FALSE(dashboard->alertShown());
  auto* screen =
      engine->singletonInstance<ui::WeekScreen*>(qmlTypeId("Brindlet", 1, 0, "WeekScreen"));
  ASSERT_NE(screen, nullptr);
  EXPECT_FALSE(screen->dropOnColumn(QStringLiteral("not an id"), 4));
  EXPECT_FALSE(screen->dropOnColumn(QStringLiteral("0F4C2A47-9D5B-4E0A-8C3B-1D2E3F405162"), 4));
  EXPECT_FALSE(screen->dropOnColumn(QString(), 4));
}

TEST_F(WeekViewTest, OpenDayLeavesTheWeekAndShowsThatDayOnToday) {
  openWeek({makeTask().titled("Dentist").plannedOn(kTuesday)});
  click(item("Open " + label(kTuesday)));
  EXPECT_EQ(dashboard->destination(), 0);
  EXPECT_EQ(item(QStringLiteral("weekView")), nullptr);
  EXPECT_NE(item(QStringLiteral("todayView")), nullptr);
  EXPECT_EQ(host->state().selectedDay, kTuesday);
  EXPECT_EQ(textOf(item(QStringLiteral("dayTitle"))), "Tuesday, November 17");
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Dentist"});
}

TEST_F(WeekViewTest, TodayBringsALaterWeekBackToThePresentAndStaysOnTheWeek) {
  openWeek({makeTask().titled("This week").plannedOn(kWednesday),
            makeTask().titled("Far away").plannedOn({2027, 1, 13})});
  onModel([](AppModel& model) { model.setSelectedDay({2027, 1, 12}); });
  EXPECT_EQ(column(kWednesday), nullptr);
  EXPECT_EQ(cardsIn(column(label({2027, 1, 13}))), std::vector<QString>{"Far away"});

  clickButton("Today");
  EXPECT_EQ(host->state().selectedDay, kSaturday);
  EXPECT_EQ(dashboard->destination(), 1);
  EXPECT_NE(item(QStringLiteral("weekView")), nullptr);
  EXPECT_EQ(cardsIn(column(kWednesday)), std::vector<QString>{"This week"});
  EXPECT_EQ(item(QStringLiteral("weekTask.Far away")), nullptr);
}

TEST_F(WeekViewTest, DraggingACardToUnscheduledTakesItOffItsDay) {
  const FocusTask task = makeTask().titled("Water the plants").plannedOn(kMonday).estimated(10);
  openWeek({task});
  drag(item(QStringLiteral("weekTask.Water the plants")), column(QStringLiteral("Unscheduled")));
  EXPECT_EQ(storedTask(task.id)->plannedDay, std::nullopt);
  EXPECT_EQ(cardsIn(column(QStringLiteral("Unscheduled"))),
            std::vector<QString>{"Water the plants"});
  EXPECT_EQ(cardsIn(column(kMonday)), std::vector<QString>{});
  EXPECT_EQ(subtitleOf(column(kMonday)), "0h 0m");
}

TEST_F(WeekViewTest, DraggingACardToAnotherDayPlansItThereBehindTheTasksAlreadyThere) {
  const FocusTask moved = makeTask().titled("Call the bank").plannedOn(kMonday).estimated(15);
  openWeek({moved, makeTask().titled("Laundry").plannedOn(kFriday).estimated(40)});
  drag(item(QStringLiteral("weekTask.Call the bank")), column(kFriday));
  EXPECT_EQ(storedTask(moved.id)->plannedDay, kFriday);
  EXPECT_EQ(cardsIn(column(kFriday)), (std::vector<QString>{"Laundry", "Call the bank"}));
  EXPECT_EQ(subtitleOf(column(kFriday)), "0h 55m");
}

TEST_F(WeekViewTest, HoldingADraggedCardAtTheBoardsEdgeScrollsOnToTheColumnsOutOfSight) {
  const FocusTask task = makeTask().titled("Return the books").plannedOn(kMonday);
  launch({task});
  click(item(QStringLiteral("destination.Week")));
  QQuickItem* board = item(QStringLiteral("weekBoard"));
  QQuickItem* unscheduled = column(QStringLiteral("Unscheduled"));
  const QRectF boardArea = board->mapRectToScene(QRectF(0, 0, board->width(), board->height()));
  ASSERT_GT(unscheduled->mapToScene({0, 0}).x(), boardArea.right()) << "starts out of sight";

  const QPoint start = centreOf(item(QStringLiteral("weekTask.Return the books"))).toPoint();
  const QPoint edge(static_cast<int>(boardArea.right()) - 12, start.y());
  QTest::mousePress(window, Qt::LeftButton, {}, start);
  constexpr int kSteps = 12;
  for (int step = 1; step <= kSteps; ++step) {
    QTest::mouseMove(window, start + (edge - start) * step / kSteps + QPoint(0, step < 3 ? 4 : 0));
  }
  QTest::mouseMove(window, edge);
  const qreal widest = board->property("contentWidth").toReal() - board->width();
  QDeadlineTimer deadline(5000);
  while (!deadline.hasExpired() && board->property("contentX").toReal() < widest) QTest::qWait(20);
  EXPECT_DOUBLE_EQ(board->property("contentX").toReal(), widest);

  const QPoint target = centreOf(unscheduled).toPoint();
  for (int step = 1; step <= kSteps; ++step) {
    QTest::mouseMove(window, edge + (target - edge) * step / kSteps);
  }
  QTest::mouseRelease(window, Qt::LeftButton, {}, target);
  settle();
  EXPECT_EQ(storedTask(task.id)->plannedDay, std::nullopt);
  EXPECT_EQ(cardsIn(unscheduled), std::vector<QString>{"Return the books"});
}

TEST_F(WeekViewTest, TheMoveMenuListsTheWeekAndMovesATaskToTheChosenDay) {
  const FocusTask task = makeTask().titled("Pay the bills").plannedOn(kMonday);
  openWeek({task});
  click(item(QStringLiteral("move.Pay the bills")));
  QQuickItem* menu = item(QStringLiteral("moveMenu"));
  ASSERT_NE(menu, nullptr);
  std::vector<QString> expected;
  for (const LocalDay& day : host->state().weekDays()) expected.push_back(label(day));
  expected.push_back(QStringLiteral("Unscheduled"));
  EXPECT_EQ(buttonsIn(menu), expected);

  window->resize(1040, 780);
  screenshot("week-move-menu");
  clickButton(label(kThursday));
  window->resize(2120, 900);
  frame();
  EXPECT_EQ(storedTask(task.id)->plannedDay, kThursday);
  EXPECT_EQ(cardsIn(column(kThursday)), std::vector<QString>{"Pay the bills"});
  EXPECT_EQ(item(QStringLiteral("editorTitle")), nullptr) << "the menu doesn't open the editor";

  click(item(QStringLiteral("move.Pay the bills")));
  clickButton(QStringLiteral("Unscheduled"));
  EXPECT_EQ(storedTask(task.id)->plannedDay, std::nullopt);
}

TEST_F(WeekViewTest, ClickingACardOpensTheEditorForItsTask) {
  openWeek({makeTask().titled("Plan the trip").plannedOn(kWednesday)});
  click(item(QStringLiteral("weekTask.Plan the trip")));
  ASSERT_NE(item(QStringLiteral("editorTitle")), nullptr);
  ASSERT_NE(dashboard->draft(), nullptr);
  EXPECT_EQ(dashboard->draft()->property("title").toString(), "Plan the trip");
}

TEST_F(WeekViewTest, TheCardsAccessibleEditActionOpensTheEditor) {
  openWeek({makeTask().titled("Renew the lease").plannedOn(kFriday)});
  QQuickItem* card =
      descendant(item(QStringLiteral("weekTask.Renew the lease")), QStringLiteral("weekTaskCard"));
  ASSERT_NE(card, nullptr);
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(card);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Renew the lease");
  EXPECT_EQ(accessible->text(QAccessible::Description), "Edit");
  ASSERT_NE(accessible->actionInterface(), nullptr);
  accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  settle();
  ASSERT_NE(dashboard->draft(), nullptr);
  EXPECT_EQ(dashboard->draft()->property("title").toString(), "Renew the lease");
}

TEST_F(WeekViewTest, ATodayRowsDragTextDroppedOnAWeekColumnMovesTheTask) {
  const FocusTask task = makeTask().titled("Send the parcel").plannedOn(kSaturday);
  launch({task});
  const QString dragText =
      item(QStringLiteral("taskRow.Send the parcel"))->property("dragText").toString();
  EXPECT_EQ(dragText, ui::qs(task.id.uppercaseText()));

  click(item(QStringLiteral("destination.Week")));
  window->resize(2120, 900);
  frame();
  QQuickItem* source = dragSource(dragText);
  drag(source, column(kThursday));
  EXPECT_EQ(source->property("dropResult").toInt(), Qt::MoveAction);
  EXPECT_EQ(storedTask(task.id)->plannedDay, kThursday);
  EXPECT_EQ(cardsIn(column(kThursday)), std::vector<QString>{"Send the parcel"});
}

TEST_F(WeekViewTest, ABusyWeekWithAnOverloadedDayAndUnscheduledTasks) {
  FocusTask done = makeTask().titled("Morning run").plannedOn(kMonday).estimated(30);
  done.status = TaskStatus::completed;
  done.completedAt = kTestNow;
  openWeek({makeTask()
                .titled("Finish the quarterly report")
                .plannedOn(kMonday)
                .estimated(120)
                .withPriority(TaskPriority::critical),
            done, makeTask().titled("Team sync").plannedOn(kMonday).estimated(30),
            makeTask()
                .titled("Design review with the platform team")
                .plannedOn(kTuesday)
                .estimated(240)
                .withPriority(TaskPriority::high),
            makeTask().titled("Migrate the billing database").plannedOn(kTuesday).estimated(200),
            makeTask().titled("Interviews").plannedOn(kTuesday).estimated(90),
            makeTask().titled("Write the newsletter").plannedOn(kWednesday).estimated(45),
            makeTask()
                .titled("Book flights")
                .plannedOn(kThursday)
                .estimated(20)
                .withPriority(TaskPriority::low),
            makeTask().titled("Read the onboarding notes"),
            makeTask().titled("Renew passport").estimated(60).withPriority(TaskPriority::high)});
  EXPECT_TRUE(column(kTuesday)->property("overloaded").toBool());
  EXPECT_EQ(subtitleOf(column(kTuesday)), "8h 50m");
  EXPECT_EQ(subtitleOf(column(kMonday)), "2h 30m");
  EXPECT_EQ(cardsIn(column(QStringLiteral("Unscheduled"))),
            (std::vector<QString>{"Read the onboarding notes", "Renew passport"}));
  EXPECT_EQ(textOf(descendant(item(QStringLiteral("weekTask.Renew passport")),
                              QStringLiteral("weekTaskEstimate"))),
            "60m");
  window->resize(1040, 780);
  screenshot("week-busy");
  window->resize(2120, 900);
  screenshot("week-busy-wide");
}

}  // namespace
}  // namespace brindlet::testing

// The app's own buttons, icons, text field and scroll bar, driven through the real window.

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSvgRenderer>
#include <QTest>
#include <cstdlib>
#include <memory>
#include <thread>

#include "ControlsStyle.h"
#include "IconShape.h"
#include "SymbolIcon.h"
#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using AppControlsTest = UiTest;

std::vector<FocusTask> tasksForALongDay() {
  std::vector<FocusTask> tasks;
  for (int i = 1; i <= 16; ++i) {
    tasks.push_back(makeTask().titled("Task " + std::to_string(i)).plannedOn(kSaturday));
  }
  return tasks;
}

TEST_F(AppControlsTest, AButtonWithTheKeyboardFocusClicksWithSpaceAndWithReturn) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  button("Start Focus")->forceActiveFocus(Qt::TabFocusReason);
  EXPECT_TRUE(button("Start Focus")->property("visualFocus").toBool());
  pressKey(Qt::Key_Space);
  ASSERT_NE(button("Pause"), nullptr);

  button("Pause")->forceActiveFocus(Qt::TabFocusReason);
  pressKey(Qt::Key_Return);
  EXPECT_NE(button("Resume Focus"), nullptr);
}

TEST_F(AppControlsTest, ADisabledButtonIgnoresTheMouse) {
  launch();
  QQuickItem* add = button("Add");
  ASSERT_NE(add, nullptr);
  EXPECT_FALSE(add->isEnabled());
  click(add);
  EXPECT_TRUE(queueTitles().empty());
  EXPECT_FALSE(host->state().editorError.has_value());
}

TEST_F(AppControlsTest, AButtonPressedAndReleasedOutsideItDoesNotClick) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  QQuickItem* start = button("Start Focus");
  ASSERT_NE(start, nullptr);
  frame();
  const QPoint inside = centreOf(start).toPoint();
  const QPoint outside = inside + QPoint(0, static_cast<int>(start->height()) * 2);
  QTest::mousePress(window, Qt::LeftButton, {}, inside);
  QTest::mouseMove(window, outside);
  QTest::mouseRelease(window, Qt::LeftButton, {}, outside);
  settle();
  EXPECT_NE(button("Start Focus"), nullptr);
  EXPECT_FALSE(host->state().tasks().front().status == TaskStatus::active);
}

TEST_F(AppControlsTest, TheQuickAddFieldShowsItsPlaceholderOnlyWhileEmpty) {
  launch();
  EXPECT_TRUE(showsText("Add a task for this day"));
  click(item("quickAddField"));
  type("Call");
  EXPECT_FALSE(showsText("Add a task for this day"));
}

TEST_F(AppControlsTest, AnOverfullDayScrollsByDraggingTheScrollBarHandle) {
  launch(tasksForALongDay());
  QQuickItem* handle = item("scrollHandle");
  ASSERT_NE(handle, nullptr);
  auto* flickable = qvariant_cast<QQuickItem*>(item("todayView")->property("flickable"));
  ASSERT_NE(flickable, nullptr);
  EXPECT_EQ(flickable->property("contentY").toDouble(), 0.0);

  frame();
  const QPoint start = centreOf(handle).toPoint();
  QTest::mouseMove(window, start);
  QTest::mousePress(window, Qt::LeftButton, {}, start);
  for (int step = 1; step <= 10; ++step) QTest::mouseMove(window, start + QPoint(0, 20 * step));
  QTest::mouseRelease(window, Qt::LeftButton, {}, start + QPoint(0, 200));
  settle();
  EXPECT_GT(flickable->property("contentY").toDouble(), 100.0);
}

TEST_F(AppControlsTest, ADayThatFitsHasNoScrollBar) {
  launch();
  EXPECT_EQ(item("scrollBar"), nullptr);
}

TEST(SymbolIconTest, DrawsTheSymbolInTheWantedColourAndNothingForAnUnknownOne) {
  const QImage image =
      ui::SymbolIcon::drawn(QStringLiteral("checkmark"), QColor("#d03030"), QSize(32, 32));
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(image.size(), QSize(32, 32));
  int inked = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() < 255) continue;
      ++inked;
      EXPECT_EQ(pixel.rgb(), QColor("#d03030").rgb());
    }
  }
  EXPECT_GT(inked, 20);
  EXPECT_TRUE(
      ui::SymbolIcon::drawn(QStringLiteral("no.such.symbol"), Qt::red, QSize(16, 16)).isNull());
}

TEST(ControlsStyleTest, TheStockControlsTakeTheBasicStyle) {
  ui::chooseControlsStyle();
  EXPECT_EQ(QQuickStyle::name(), "Basic");
}

QImage alphaOf(const QImage& image) { return image.convertToFormat(QImage::Format_Alpha8); }

TEST(SymbolIconTest, EveryColourOfAnIconHasTheSameShape) {
  const QImage red = ui::SymbolIcon::drawn(QStringLiteral("bell.fill"), Qt::red, QSize(20, 20));
  const QImage blue = ui::SymbolIcon::drawn(QStringLiteral("bell.fill"), Qt::blue, QSize(20, 20));
  EXPECT_EQ(alphaOf(red), alphaOf(blue));
  EXPECT_NE(red, blue);
}

TEST(SymbolIconTest, IconsDrawnAheadOnAnotherThreadAreThoseTheSvgGives) {
  std::thread([] { ui::SymbolIcon::drawBundled(); }).join();
  EXPECT_TRUE(ui::SymbolIcon::isDrawn(QStringLiteral("circle"), QSize(14, 14)));

  QImage expected(QSize(14, 14), QImage::Format_ARGB32_Premultiplied);
  expected.fill(Qt::transparent);
  {
    QPainter painter(&expected);
    QSvgRenderer(QStringLiteral(":/icons/circle.svg")).render(&painter);
  }
  const QImage drawn = ui::SymbolIcon::drawn(QStringLiteral("circle"), Qt::black, QSize(14, 14));
  EXPECT_EQ(alphaOf(drawn), alphaOf(expected));
  EXPECT_NE(alphaOf(drawn), alphaOf(QImage(QSize(14, 14), QImage::Format_Alpha8)));
}

QImage drawnFromSvg(const QString& symbol, QSize pixels) {
  QImage shape(pixels, QImage::Format_ARGB32_Premultiplied);
  shape.fill(Qt::transparent);
  {
    QPainter painter(&shape);
    QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(symbol)).render(&painter);
  }
  return shape;
}

TEST(SymbolIconTest, EveryIconDrawnAheadByTheBuildIsTheShapeItsSvgGives) {
  const QStringList svgs = QDir(QStringLiteral(":/icons")).entryList(QDir::Files);
  ASSERT_GT(svgs.size(), 30);
  for (const QString& svg : svgs) {
    const QString symbol = svg.chopped(4);
    for (const int side : {12, 13, 14, 15, 16, 18, 24, 26, 28, 30, 32, 36}) {
      SCOPED_TRACE((symbol + QStringLiteral(" at %1").arg(side)).toStdString());
      const QImage prepared = ui::preparedIconShape(symbol, QSize(side, side));
      ASSERT_FALSE(prepared.isNull());
      EXPECT_EQ(alphaOf(prepared), alphaOf(drawnFromSvg(symbol, QSize(side, side))));
    }
  }
}

TEST(SymbolIconTest, ASizeTheBuildDidNotDrawIsDrawnFromTheSvg) {
  const QSize odd(34, 34);
  ASSERT_TRUE(ui::preparedIconShape(QStringLiteral("bell.fill"), odd).isNull());
  const QImage drawn = ui::SymbolIcon::drawn(QStringLiteral("bell.fill"), Qt::black, odd);
  EXPECT_EQ(alphaOf(drawn), alphaOf(drawnFromSvg(QStringLiteral("bell.fill"), odd)));
  EXPECT_NE(alphaOf(drawn), alphaOf(QImage(odd, QImage::Format_Alpha8)));
}

TEST(SymbolIconTest, NoShapeIsDrawnAheadForAnUnknownSymbolOrAnOblongSize) {
  EXPECT_TRUE(ui::preparedIconShape(QStringLiteral("no.such.symbol"), QSize(14, 14)).isNull());
  EXPECT_TRUE(ui::preparedIconShape(QStringLiteral("bell.fill"), QSize(14, 16)).isNull());
}

// How many of the window's pixels are mostly `color`, as the scene graph renders them.
int pixelsOf(QQuickWindow& window, QColor color) {
  const QImage shown = window.grabWindow().convertToFormat(QImage::Format_RGB32);
  int count = 0;
  for (int y = 0; y < shown.height(); ++y) {
    for (int x = 0; x < shown.width(); ++x) {
      const QColor pixel = shown.pixelColor(x, y);
      const int distance = std::abs(pixel.red() - color.red()) +
                           std::abs(pixel.green() - color.green()) +
                           std::abs(pixel.blue() - color.blue());
      if (distance < 60) ++count;
    }
  }
  return count;
}

TEST(SymbolIconTest, AScreensIconGivenNoColourOrSizeIsInTheSecondaryTextColourAndSixteenPixels) {
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData(
      "import QtQuick\nimport Brindlet\n"
      "Item { property color secondary: Theme.secondary; AppIcon { symbol: \"circle\" } }",
      QUrl(QStringLiteral("qrc:/IconProbe.qml")));
  const std::unique_ptr<QObject> probe(component.create());
  ASSERT_NE(probe, nullptr) << component.errorString().toStdString();
  const auto icons = probe->findChildren<ui::SymbolIcon*>();
  ASSERT_EQ(icons.size(), 1);
  EXPECT_EQ(icons.front()->color(), probe->property("secondary").value<QColor>());
  EXPECT_EQ(icons.front()->implicitWidth(), 16);
  EXPECT_EQ(icons.front()->implicitHeight(), 16);
}

TEST(SymbolIconTest, AnIconOnScreenFollowsItsColourSymbolAndSize) {
  QQuickWindow window;
  window.setColor(Qt::white);
  window.resize(48, 48);
  auto* icon = new ui::SymbolIcon(window.contentItem());
  icon->setSize(QSizeF(16, 16));
  icon->setSymbol(QStringLiteral("bell.fill"));
  icon->setColor(Qt::red);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  const int red = pixelsOf(window, Qt::red);
  EXPECT_GT(red, 20);

  icon->setColor(Qt::blue);
  EXPECT_EQ(pixelsOf(window, Qt::red), 0);
  EXPECT_EQ(pixelsOf(window, Qt::blue), red);

  icon->setSize(QSizeF(32, 32));
  EXPECT_GT(pixelsOf(window, Qt::blue), 3 * red);

  icon->setSymbol(QString());
  EXPECT_EQ(pixelsOf(window, Qt::blue), 0);
  icon->setSymbol(QStringLiteral("no.such.symbol"));
  EXPECT_EQ(pixelsOf(window, Qt::blue), 0);
}

}  // namespace
}  // namespace brindlet::testing

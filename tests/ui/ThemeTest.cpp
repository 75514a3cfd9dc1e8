// The shared looks as the screens read them: through the module's `Theme` singleton.

#include <gtest/gtest.h>

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <memory>

namespace brindlet::testing {
namespace {

// An object whose properties are bound to `bindings`, in a file that imports the module as the
// screens do.
std::unique_ptr<QObject> boundTo(QQmlEngine& engine, const QByteArray& bindings) {
  QQmlComponent component(&engine);
  component.setData("import QtQuick\nimport Brindlet\nQtObject {\n" + bindings + "\n}",
                    QUrl(QStringLiteral("qrc:/ThemeProbe.qml")));
  EXPECT_FALSE(component.isError()) << component.errorString().toStdString();
  return std::unique_ptr<QObject>(component.create());
}

QColor colorOf(const QObject& object, const char* property) {
  return object.property(property).value<QColor>();
}

TEST(ThemeTest, ATintIsTheBaseColourAtTheGivenOpacityWhateverOpacityTheBaseHad) {
  QQmlEngine engine;
  const auto probe = boundTo(engine,
                             "property color accent: Theme.tint(Theme.accent, 0.06)\n"
                             "property color outline: Theme.tint(Theme.cardOutline, 1)\n"
                             "property color base: Theme.accent");
  ASSERT_NE(probe, nullptr);
  EXPECT_EQ(colorOf(*probe, "accent").rgb(), colorOf(*probe, "base").rgb());
  EXPECT_NEAR(colorOf(*probe, "accent").alphaF(), 0.06, 0.002);
  EXPECT_EQ(colorOf(*probe, "outline").alpha(), 255);
}

TEST(ThemeTest, AScreensBackgroundFadesToItsColourFaintlyTintedWithTheAccent) {
  QQmlEngine engine;
  const auto probe =
      boundTo(engine,
              "property color shade: Theme.backgroundShade\n"
              "property color tinted: Qt.tint(Theme.background, Theme.tint(Theme.accent, 0.05))");
  ASSERT_NE(probe, nullptr);
  EXPECT_EQ(colorOf(*probe, "shade").rgba(), colorOf(*probe, "tinted").rgba());
}

TEST(ThemeTest, EachPriorityHasItsOwnColourAndAnyOtherIsGrey) {
  QQmlEngine engine;
  const auto probe = boundTo(engine,
                             "property color critical: Theme.priorityColor(\"critical\")\n"
                             "property color high: Theme.priorityColor(\"high\")\n"
                             "property color normal: Theme.priorityColor(\"normal\")\n"
                             "property color low: Theme.priorityColor(\"low\")\n"
                             "property color red: Theme.red\n"
                             "property color orange: Theme.orange\n"
                             "property color blue: Theme.blue\n"
                             "property color grey: Theme.grey");
  ASSERT_NE(probe, nullptr);
  EXPECT_EQ(colorOf(*probe, "critical"), colorOf(*probe, "red"));
  EXPECT_EQ(colorOf(*probe, "high"), colorOf(*probe, "orange"));
  EXPECT_EQ(colorOf(*probe, "normal"), colorOf(*probe, "blue"));
  EXPECT_EQ(colorOf(*probe, "low"), colorOf(*probe, "grey"));
  EXPECT_NE(colorOf(*probe, "red"), colorOf(*probe, "grey"));
}

TEST(ThemeTest, TheScreensCannotChangeTheSharedLooks) {
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData(
      "import QtQuick\nimport Brindlet\nQtObject { Component.onCompleted: Theme.bodySize = 30 }",
      QUrl(QStringLiteral("qrc:/ThemeWriter.qml")));
  const std::unique_ptr<QObject> writer(component.create());
  const auto probe = boundTo(engine, "property int bodySize: Theme.bodySize");
  ASSERT_NE(probe, nullptr);
  EXPECT_EQ(probe->property("bodySize").toInt(), 14);
}

}  // namespace
}  // namespace brindlet::testing

// Every QML file of the module compiles and the main window comes up headless.

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QQmlComponent>
#include <QQmlEngine>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using QmlModuleLoadTest = UiTest;

TEST_F(QmlModuleLoadTest, EveryComponentOfTheModuleCompiles) {
  launch();
  QQmlEngine probe;
  int files = 0;
  QDirIterator it(QStringLiteral(":/Brindlet"), {QStringLiteral("*.qml")});
  while (it.hasNext()) {
    const QString path = it.next();
    QQmlComponent component(&probe, QUrl(QStringLiteral("qrc") + path));
    EXPECT_FALSE(component.isError()) << component.errorString().toStdString();
    ++files;
  }
  // Every file of the source folder is part of the module.
  const auto sources = QDir(QStringLiteral(BRINDLET_QML_SOURCE_DIR))
                           .entryList({QStringLiteral("*.qml")}, QDir::Files)
                           .size();
  EXPECT_EQ(files, sources);
}

TEST_F(QmlModuleLoadTest, TheMainWindowOpensWithItsTitleAndSizes) {
  launch();
  EXPECT_EQ(window->title(), QStringLiteral("Brindlet"));
  EXPECT_EQ(window->width(), 1040);
  EXPECT_EQ(window->height(), 780);
  EXPECT_EQ(window->minimumWidth(), 860);
  EXPECT_EQ(window->minimumHeight(), 680);
}

}  // namespace
}  // namespace brindlet::testing

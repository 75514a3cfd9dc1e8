// The UI tests run in one QApplication on the offscreen platform, with the user's folders and
// session bus pointed away from anything real.

#include <QtQml/qqmlextensionplugin.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <filesystem>

#include "ControlsStyle.h"
#include "PrivateSession.h"

Q_IMPORT_QML_PLUGIN(BrindletPlugin)

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Listing the tests, as the build does to register them, needs no application.
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();

  const std::filesystem::path home = brindlet::testing::usePrivateSession();
  QApplication app(argc, argv);
  brindlet::ui::chooseControlsStyle();
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(home);
  return result;
}

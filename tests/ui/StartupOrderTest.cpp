// The start-up warm-up against the application object's own start: these tests make the
// application themselves, so they run in a process of their own.

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <chrono>
#include <filesystem>
#include <thread>

#include "PrivateSession.h"
#include "StartupWarmUp.h"
#include "SymbolIcon.h"

namespace brindlet::testing {
namespace {

using namespace std::chrono_literals;

const QString kIcon = QStringLiteral("circle");
constexpr QSize kIconPixels(14, 14);

bool iconDrawnWithin(std::chrono::milliseconds limit) {
  QElapsedTimer waited;
  waited.start();
  while (!ui::SymbolIcon::isDrawn(kIcon, kIconPixels)) {
    if (waited.elapsed() > limit.count()) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

TEST(StartupOrderTest, AWarmUpWhoseApplicationNeverStartsEndsWithoutDrawingIcons) {
  {
    const ui::StartupWarmUp warmUp;
    std::this_thread::sleep_for(200ms);
  }
  EXPECT_FALSE(ui::SymbolIcon::isDrawn(kIcon, kIconPixels));
}

TEST(StartupOrderTest, IconsAreDrawnOnlyOnceTheApplicationObjectExists) {
  ui::StartupWarmUp warmUp;
  // Drawing before the application object is whole crashes now and then, as the platform is still
  // loading; no icon may be drawn however long the application takes to come.
  EXPECT_FALSE(iconDrawnWithin(300ms));

  int argc = 1;
  char name[] = "ui_startup_tests";
  char* argv[] = {name, nullptr};
  const QGuiApplication application(argc, argv);
  const auto iconsAllowed = warmUp.applicationStarted();
  EXPECT_TRUE(iconDrawnWithin(10s));
}

}  // namespace
}  // namespace brindlet::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const std::filesystem::path home = brindlet::testing::usePrivateSession();
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(home);
  return result;
}

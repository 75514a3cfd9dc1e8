// The start-up warm-up runs beside the window as the app starts it.

#include <gtest/gtest.h>

#include "StartupWarmUp.h"
#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using StartupWarmUpTest = UiTest;

TEST_F(StartupWarmUpTest, TheWindowLoadsWhileTheWarmUpRunsAndShowsTheSameDay) {
  {
    const ui::StartupWarmUp warmUp;
    launch();
    EXPECT_EQ(item("dayTitle")->property("text").toString(), "Saturday, November 21");
    EXPECT_EQ(
        item("weekDay.0")->findChild<QQuickItem*>("weekDayLabel")->property("text").toString(),
        "16 Mon");
  }
  EXPECT_TRUE(showsText("Day cleared"));
}

}  // namespace
}  // namespace brindlet::testing

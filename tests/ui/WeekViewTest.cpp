// The Week screen: the board of day columns, the unscheduled column and moving tasks between them.

#include <gtest/gtest.h>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using WeekViewTest = UiTest;

TEST_F(WeekViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Week"));
  EXPECT_NE(item("weekView"), nullptr);
}

}  // namespace
}  // namespace brindlet::testing

// The Data Safety screen: the daily copy, export through a save panel and restore through an open
// panel.

#include <gtest/gtest.h>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using DataSafetyViewTest = UiTest;

TEST_F(DataSafetyViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Data Safety"));
  EXPECT_NE(item("dataSafetyView"), nullptr);
}

}  // namespace
}  // namespace brindlet::testing

// The Devices screen: the pairing status card and the paired devices.

#include <gtest/gtest.h>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using DevicesViewTest = UiTest;

TEST_F(DevicesViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Devices"));
  EXPECT_NE(item("devicesView"), nullptr);
}

}  // namespace
}  // namespace brindlet::testing

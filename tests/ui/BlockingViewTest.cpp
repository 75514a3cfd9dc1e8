// The Blocking screen: setup and running cards, the countdown and the domain editor.

#include <gtest/gtest.h>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using BlockingViewTest = UiTest;

TEST_F(BlockingViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Blocking"));
  EXPECT_NE(item("blockingView"), nullptr);
}

}  // namespace
}  // namespace brindlet::testing

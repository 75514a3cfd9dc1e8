// The Review screen: the week's figures, the workload chart and the recommendations.

#include <gtest/gtest.h>

#include "UiFixture.h"

namespace brindlet::testing {
namespace {

using ReviewViewTest = UiTest;

TEST_F(ReviewViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Review"));
  EXPECT_NE(item("reviewView"), nullptr);
}

}  // namespace
}  // namespace brindlet::testing

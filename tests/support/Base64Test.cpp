#include <gtest/gtest.h>

#include "support/Base64.h"

namespace brindlet {
namespace {

TEST(Base64Test, EncodesWithPaddingAsRfc4648Shows) {
  EXPECT_EQ(base64Encoded(""), "");
  EXPECT_EQ(base64Encoded("f"), "Zg==");
  EXPECT_EQ(base64Encoded("fo"), "Zm8=");
  EXPECT_EQ(base64Encoded("foo"), "Zm9v");
  EXPECT_EQ(base64Encoded("foobar"), "Zm9vYmFy");
  EXPECT_EQ(base64Encoded(std::string("\xfb\xff", 2)), "+/8=");
}

TEST(Base64Test, EveryByteValueRoundTrips) {
  std::string bytes;
  for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
  for (std::size_t length = 0; length <= bytes.size(); length += 37) {
    const std::string part = bytes.substr(0, length);
    EXPECT_EQ(base64Decoded(base64Encoded(part)), part);
  }
}

TEST(Base64Test, RefusesTextThatIsNotPaddedBase64) {
  EXPECT_EQ(base64Decoded("Zg"), std::nullopt);
  EXPECT_EQ(base64Decoded("Zg=a"), std::nullopt);
  EXPECT_EQ(base64Decoded("Z==="), std::nullopt);
  EXPECT_EQ(base64Decoded("Zm9v!A=="), std::nullopt);
  EXPECT_EQ(base64Decoded("Zg==Zg=="), std::nullopt);
  EXPECT_EQ(base64Decoded("Zh=="), std::nullopt);
}

}  // namespace
}  // namespace brindlet

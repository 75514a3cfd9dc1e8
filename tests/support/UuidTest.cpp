#include <gtest/gtest.h>

#include <unordered_set>

#include "support/Uuid.h"

namespace brindlet {
namespace {

constexpr const char* kUpper = "4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501";
constexpr const char* kLower = "4b402e53-3c5d-4a66-a9c5-c0dfb9c6a501";

TEST(UuidTest, ParsesEitherCaseToTheSameIdentifier) {
  const auto upper = Uuid::parse(kUpper);
  const auto lower = Uuid::parse(kLower);
  ASSERT_TRUE(upper && lower);
  EXPECT_EQ(*upper, *lower);
}

TEST(UuidTest, WritesCanonicalUpperAndLowerCaseText) {
  const Uuid id = *Uuid::parse(kLower);
  EXPECT_EQ(id.uppercaseText(), kUpper);
  EXPECT_EQ(id.lowercaseText(), kLower);
}

TEST(UuidTest, RefusesTextThatIsNotCanonical) {
  for (const char* text :
       {"", "4B402E53", "4B402E533C5D4A66A9C5C0DFB9C6A501",
        "{4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501}", "4B402E53-3C5D-4A66-A9C5-C0DFB9C6A50G",
        " 4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501", "4B402E53-3C5D-4A66-A9C5-C0DFB9C6A5011"}) {
    EXPECT_FALSE(Uuid::parse(text).has_value()) << text;
  }
  EXPECT_FALSE(Uuid::parse(std::string_view("4B402E53-3C5D-4A66-A9C5-C0DFB9C6A50\0", 36)));
}

TEST(UuidTest, RandomIdentifiersAreVersionFourAndDistinct) {
  std::unordered_set<Uuid> seen;
  for (int i = 0; i < 1000; ++i) {
    const Uuid id = Uuid::random();
    EXPECT_EQ(id.bytes()[6] >> 4, 4);
    EXPECT_EQ(id.bytes()[8] >> 6, 2);
    EXPECT_TRUE(seen.insert(id).second);
  }
}

TEST(UuidTest, NilIdentifierIsAllZero) {
  EXPECT_EQ(Uuid().uppercaseText(), "00000000-0000-0000-0000-000000000000");
}

}  // namespace
}  // namespace brindlet

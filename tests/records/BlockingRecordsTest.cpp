#include <gtest/gtest.h>

#include "Builders.h"
#include "records/BlockSession.h"
#include "records/DomainGroup.h"
#include "records/DomainRule.h"

namespace brindlet {
namespace {

template <typename Record, typename Decode>
Record roundTrip(const Record& record, Decode decode) {
  JsonWriter out;
  toJson(out, record);
  const JsonDocument document(out.text());
  return decode(document.root());
}

template <typename Decode>
std::string decodingFailure(const std::string& json, Decode decode) {
  try {
    const JsonDocument document(json);
    (void)decode(document.root());
  } catch (const DecodingError& error) {
    return error.description();
  }
  return "decoded";
}

BlockSession sampleSession() {
  return {.id = Uuid::random(),
          .group = DomainGroup::socialDistractions(),
          .mode = SessionMode::strict,
          .startedAt = testing::kTestNow,
          .endsAt = testing::kTestNow.advanced(1500.5),
          .state = SessionState::attentionRequired};
}

TEST(BlockingRecordsTest, EncodingThenDecodingYieldsAnEqualRecord) {
  const DomainRule rule{.id = Uuid::random(), .domain = "example.org", .isEnabled = false};
  EXPECT_EQ(roundTrip(rule, domainRuleFromJson), rule);
  DomainGroup group{
      .id = Uuid::random(), .name = "Work \"noise\"", .rules = {rule}, .isEnabled = false};
  EXPECT_EQ(roundTrip(group, domainGroupFromJson), group);
  const BlockSession session = sampleSession();
  EXPECT_EQ(roundTrip(session, blockSessionFromJson), session);
}

TEST(BlockingRecordsTest, BlockSessionJsonHoldsItsGroupInlineWithRules) {
  JsonWriter out;
  toJson(out, sampleSession());
  const JsonDocument document(out.text());
  const JsonObject group = document.root().object().required("group").object();
  EXPECT_EQ(group.required("name").string(), "Social Distractions");
  const auto domains = group.required("rules").list(
      [](const JsonNode& rule) { return std::string(rule.object().required("domain").string()); });
  EXPECT_EQ(domains, (std::vector<std::string>{"facebook.com", "instagram.com", "tiktok.com",
                                               "twitter.com", "x.com"}));
}

TEST(BlockingRecordsTest, SocialDistractionsBuiltTwiceIsEqualIdsIncluded) {
  const DomainGroup first = DomainGroup::socialDistractions();
  const DomainGroup second = roundTrip(DomainGroup::socialDistractions(), domainGroupFromJson);
  EXPECT_EQ(first, second);
  EXPECT_EQ(first.id.uppercaseText(), "4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501");
  EXPECT_TRUE(first.isEnabled);
  ASSERT_EQ(first.rules.size(), 5U);
  for (std::size_t i = 0; i < first.rules.size(); ++i) {
    EXPECT_EQ(first.rules[i].id.uppercaseText(),
              "A0000000-0000-4000-8000-00000000000" + std::to_string(i + 1));
    EXPECT_TRUE(first.rules[i].isEnabled);
  }
}

TEST(BlockingRecordsTest, RuleJsonWithoutIsEnabledIsAnErrorNotADefault) {
  EXPECT_EQ(decodingFailure(R"({"id":"A0000000-0000-4000-8000-000000000001","domain":"x.com"})",
                            domainRuleFromJson),
            "The value “isEnabled” is missing.");
}

TEST(BlockingRecordsTest, SessionStateTextAttentionRequiredReadsBack) {
  EXPECT_EQ(kSessionStateText.parse("attentionRequired"), SessionState::attentionRequired);
  EXPECT_EQ(roundTrip(sampleSession(), blockSessionFromJson).state,
            SessionState::attentionRequired);
}

TEST(BlockingRecordsTest, AnyOtherSessionStateTextIsAnError) {
  JsonWriter out;
  toJson(out, sampleSession());
  std::string json = out.take();
  json.replace(json.find("attentionRequired"), 17, "AttentionRequired");
  EXPECT_NE(decodingFailure(json, blockSessionFromJson).find("“AttentionRequired” is not one of"),
            std::string::npos);
}

TEST(BlockingRecordsTest, UnknownModeOrBadUuidFailsTheSession) {
  JsonWriter out;
  toJson(out, sampleSession());
  const std::string json = out.take();
  std::string badMode = json;
  badMode.replace(badMode.find("\"strict\""), 8, "\"relaxed\"");
  EXPECT_NE(decodingFailure(badMode, blockSessionFromJson), "decoded");
  std::string badId = json;
  badId.replace(badId.find("4B402E53"), 8, "ZZZZZZZZ");
  EXPECT_EQ(decodingFailure(badId, blockSessionFromJson),
            "The value “group.id” is not valid: “ZZZZZZZZ-3C5D-4A66-A9C5-C0DFB9C6A501” is not a "
            "UUID.");
}

}  // namespace
}  // namespace brindlet

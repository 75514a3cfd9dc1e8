#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "agent/AgentCommandEnvelope.h"
#include "agent/AgentResponseEnvelope.h"
#include "agent/JSONValue.h"
#include "support/JsonWriter.h"

namespace brindlet {
namespace {

template <typename Record>
std::string compact(const Record& record) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, record);
  return out.take();
}

JSONValue parsed(std::string_view text) {
  auto value = parseJSONValue(text);
  EXPECT_TRUE(value) << text;
  return value.value_or(JSONValue::null());
}

// ---- JSONValue ----

TEST(JSONValueTest, IntAccessorGivesWholeNumbersOnly) {
  EXPECT_EQ(JSONValue::ofNumber(3).integer(), 3);
  EXPECT_EQ(JSONValue::ofNumber(3.5).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofString("3").integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofBool(true).integer(), std::nullopt);
}

TEST(JSONValueTest, IntAccessorTakesZeroFractionsAndRefusesWhatIsNotFiniteOrOutOfRange) {
  EXPECT_EQ(JSONValue::ofNumber(2.0).integer(), 2);
  EXPECT_EQ(JSONValue::ofNumber(-2.5).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofNumber(-9223372036854775808.0).integer(),
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(JSONValue::ofNumber(1.9e19).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofNumber(-1.9e19).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofNumber(std::numeric_limits<double>::infinity()).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::ofNumber(std::numeric_limits<double>::quiet_NaN()).integer(), std::nullopt);
  EXPECT_EQ(JSONValue::null().integer(), std::nullopt);
}

TEST(JSONValueDeathTest, IntAccessorStopsTheProcessAtTwoToTheSixtyThird) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH((void)JSONValue::ofNumber(9223372036854775808.0).integer(), "");
}

TEST(JSONValueTest, NullHasNoString) {
  EXPECT_EQ(JSONValue::null().string(), std::nullopt);
  EXPECT_EQ(JSONValue::ofNumber(1).string(), std::nullopt);
  EXPECT_EQ(JSONValue::ofString("").string(), "");
}

TEST(JSONValueTest, ObjectsWithTheSameKeysInAnotherOrderAreEqual) {
  EXPECT_EQ(parsed(R"({"a":1,"b":[true,null],"c":{"x":"y","z":2}})"),
            parsed(R"({"c":{"z":2,"x":"y"},"b":[true,null],"a":1})"));
  EXPECT_NE(parsed(R"({"a":1,"b":2})"), parsed(R"({"a":1,"b":3})"));
  EXPECT_NE(parsed(R"({"a":1,"b":2})"), parsed(R"({"a":1})"));
  EXPECT_NE(parsed(R"([1,2])"), parsed(R"([2,1])"));
}

TEST(JSONValueTest, CasesAreDistinctSoOneIsNotTrueAndTheTextOneIsNotANumber) {
  EXPECT_EQ(parsed("1").kind(), JSONValue::Kind::number);
  EXPECT_EQ(parsed("true").kind(), JSONValue::Kind::boolean);
  EXPECT_NE(parsed("1"), parsed("true"));
  EXPECT_NE(parsed("1"), parsed(R"("1")"));
  EXPECT_EQ(parsed("null").kind(), JSONValue::Kind::null);
  EXPECT_EQ(parsed("[]").kind(), JSONValue::Kind::array);
  EXPECT_EQ(parsed("{}").kind(), JSONValue::Kind::object);
  EXPECT_EQ(parsed(R"("x")").kind(), JSONValue::Kind::string);
}

TEST(JSONValueTest, WritesBareValuesWithKeysInTheirOrder) {
  const std::string text = R"({"b":[1,2.5,"x",false,null,{}],"a":{"k":-3}})";
  EXPECT_EQ(compact(parsed(text)), text);
  EXPECT_EQ(compact(JSONValue::ofNumber(30.0)), "30");
}

TEST(JSONValueTest, TextThatIsNotOneJsonValueParsesToNothing) {
  EXPECT_EQ(parseJSONValue("{"), std::nullopt);
  EXPECT_EQ(parseJSONValue("1 2"), std::nullopt);
  EXPECT_EQ(parseJSONValue(""), std::nullopt);
}

// ---- Command envelope ----

TEST(AgentCommandEnvelopeTest, MinimalEnvelopeDecodesWithDefaults) {
  const auto envelope = decodeAgentCommandEnvelope(R"({"version":1,"command":"tasks.list"})");
  ASSERT_TRUE(envelope);
  EXPECT_EQ(envelope->version, 1);
  EXPECT_EQ(envelope->command, "tasks.list");
  EXPECT_EQ(envelope->expectedRevision, std::nullopt);
  EXPECT_FALSE(envelope->userApproval);
  EXPECT_TRUE(envelope->payload.empty());
}

TEST(AgentCommandEnvelopeTest, NullApprovalAndPayloadReadAsTheDefaults) {
  const auto envelope = decodeAgentCommandEnvelope(
      R"({"version":1,"command":"x","userApproval":null,"payload":null})");
  ASSERT_TRUE(envelope);
  EXPECT_EQ(*envelope, (AgentCommandEnvelope{.version = 1, .command = "x"}));
}

TEST(AgentCommandEnvelopeTest, FractionalVersionFailsToDecode) {
  EXPECT_EQ(decodeAgentCommandEnvelope(R"({"version":1.5,"command":"x"})"), std::nullopt);
  EXPECT_TRUE(decodeAgentCommandEnvelope(R"({"version":1.0,"command":"x"})"));
}

TEST(AgentCommandEnvelopeTest, MissingOrMistypedKeysFailTheWholeEnvelope) {
  for (const char* text : {
           R"({"command":"x"})",
           R"({"version":1})",
           R"({"version":"1","command":"x"})",
           R"({"version":1,"command":7})",
           R"({"version":1,"command":"x","expectedRevision":"3"})",
           R"({"version":1,"command":"x","expectedRevision":2.5})",
           R"({"version":1,"command":"x","userApproval":1})",
           R"({"version":1,"command":"x","payload":[]})",
           R"({"version":1,"command":"x","payload":"{}"})",
           R"([{"version":1,"command":"x"}])",
           R"("tasks.list")",
           R"({"version":1,"command":"x"} trailing)",
       }) {
    EXPECT_EQ(decodeAgentCommandEnvelope(text), std::nullopt) << text;
  }
}

TEST(AgentCommandEnvelopeTest, SnakeCaseRevisionAtTheTopIsAnUnknownKeyAndIgnored) {
  const auto envelope = decodeAgentCommandEnvelope(
      R"({"version":1,"command":"tasks.create","expected_revision":3,"extra":[1]})");
  ASSERT_TRUE(envelope);
  EXPECT_EQ(envelope->expectedRevision, std::nullopt);
}

TEST(AgentCommandEnvelopeTest, AnyVersionDecodes) {
  const auto envelope = decodeAgentCommandEnvelope(R"({"version":2,"command":"no.such"})");
  ASSERT_TRUE(envelope);
  EXPECT_EQ(envelope->version, 2);
}

TEST(AgentCommandEnvelopeTest, EncodesKeysInOrderAndRoundTrips) {
  const AgentCommandEnvelope envelope{.version = 1,
                                      .command = "tasks.update",
                                      .expectedRevision = 7,
                                      .payload = {{"task_id", JSONValue::ofString("X")},
                                                  {"estimated_minutes", JSONValue::ofNumber(30)}}};
  const std::string text = compact(envelope);
  EXPECT_EQ(text,
            R"({"version":1,"command":"tasks.update","expectedRevision":7,"userApproval":false,)"
            R"("payload":{"task_id":"X","estimated_minutes":30}})");
  EXPECT_EQ(decodeAgentCommandEnvelope(text), envelope);
  EXPECT_EQ(compact(AgentCommandEnvelope{.version = 1, .command = "tasks.list"}),
            R"({"version":1,"command":"tasks.list","userApproval":false,"payload":{}})");
}

// ---- Response envelope and error ----

TEST(AgentResponseEnvelopeTest, SuccessWithoutResultHasNoResultOrErrorKey) {
  const AgentResponseEnvelope response{.version = 1, .ok = true, .revision = 12};
  EXPECT_EQ(compact(response), R"({"version":1,"ok":true,"revision":12})");
}

TEST(AgentResponseEnvelopeTest, EncodesKeysInOrderAndRoundTrips) {
  const AgentResponseEnvelope response{
      .version = 1,
      .ok = false,
      .revision = 9,
      .result = JSONValue::ofString("Expected 7, current 9."),
      .error = AgentCommandError{"revision_conflict", "Refresh and retry."}};
  const std::string text = compact(response);
  EXPECT_EQ(text, R"({"version":1,"ok":false,"revision":9,"result":"Expected 7, current 9.",)"
                  R"("error":{"code":"revision_conflict","message":"Refresh and retry."}})");
  EXPECT_EQ(decodeAgentResponseEnvelope(text), response);
}

TEST(AgentResponseEnvelopeTest, NullResultReadsAsAbsent) {
  const auto response = decodeAgentResponseEnvelope(R"({"version":1,"ok":true,"result":null})");
  ASSERT_TRUE(response);
  EXPECT_EQ(response->result, std::nullopt);
  EXPECT_EQ(decodeAgentResponseEnvelope(R"({"version":1})"), std::nullopt);
  EXPECT_EQ(decodeAgentResponseEnvelope(R"({"version":1,"ok":false,"error":{"code":"x"}})"),
            std::nullopt);
}

TEST(AgentCommandErrorTest, EncodesCodeThenMessageAndNeedsBoth) {
  const AgentCommandError error{"unknown_command", "Unknown command: x"};
  EXPECT_EQ(compact(error), R"({"code":"unknown_command","message":"Unknown command: x"})");
  EXPECT_EQ(decodeAgentCommandError(compact(error)), error);
  EXPECT_EQ(decodeAgentCommandError(R"({"code":"x","message":null})"), std::nullopt);
}

}  // namespace
}  // namespace brindlet

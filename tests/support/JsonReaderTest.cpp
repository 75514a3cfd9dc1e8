#include <gtest/gtest.h>

#include <string>

#include "support/JsonReader.h"

namespace brindlet {
namespace {

std::string failureOf(const std::string& json, void (*read)(const JsonNode&)) {
  try {
    const JsonDocument document(json);
    read(document.root());
  } catch (const DecodingError& error) {
    return error.description();
  }
  return "no failure";
}

TEST(JsonReaderTest, TextThatIsNotJsonIsInvalidJson) {
  try {
    const JsonDocument document(std::string("{\"a\": "));
    FAIL() << "parsed";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.which(), DecodingError::Case::invalidJson);
    EXPECT_NE(error.description().find("not valid JSON"), std::string::npos);
  }
  EXPECT_THROW(JsonDocument(std::string()), DecodingError);
}

TEST(JsonReaderTest, MissingKeyNamesItsPath) {
  EXPECT_EQ(failureOf(R"({"tasks":[{"title":"a"},{}]})",
                      [](const JsonNode& root) {
                        root.object().required("tasks").forEachElement(
                            [](const JsonNode& task) { (void)task.object().required("title"); });
                      }),
            "The value “tasks[1].title” is missing.");
}

TEST(JsonReaderTest, WrongTypeNamesWhatWasExpected) {
  EXPECT_EQ(failureOf(R"({"a":{"b":"7"}})",
                      [](const JsonNode& root) {
                        (void)root.object().required("a").object().required("b").integer();
                      }),
            "The value “a.b” should be a whole number, not text.");
  EXPECT_EQ(failureOf(R"({"a":null})",
                      [](const JsonNode& root) { (void)root.object().required("a").string(); }),
            "The value “a” should be text, not null.");
}

TEST(JsonReaderTest, WholeNumbersMayBeWrittenWithAZeroFraction) {
  const JsonDocument document(std::string(R"([5.0, 5.5, 1e30, -0.0, 9007199254740993])"));
  std::vector<std::string> outcomes;
  document.root().forEachElement([&](const JsonNode& item) {
    try {
      outcomes.push_back(std::to_string(item.integer()));
    } catch (const DecodingError&) {
      outcomes.emplace_back("refused");
    }
  });
  EXPECT_EQ(outcomes,
            (std::vector<std::string>{"5", "refused", "refused", "0", "9007199254740993"}));
}

TEST(JsonReaderTest, NullAndMissingKeysAreBothAbsent) {
  const JsonDocument document(std::string(R"({"a":null,"b":1})"));
  const JsonObject object = document.root().object();
  EXPECT_FALSE(object.optional("a").has_value());
  EXPECT_FALSE(object.optional("c").has_value());
  EXPECT_TRUE(object.optional("b").has_value());
  EXPECT_TRUE(object.contains("a"));
}

TEST(JsonReaderTest, ReadsUuidsAndInstants) {
  const JsonDocument document(
      std::string(R"({"id":"4b402e53-3c5d-4a66-a9c5-c0dfb9c6a501","at":12.5,"bad":"x"})"));
  const JsonObject object = document.root().object();
  EXPECT_EQ(object.required("id").uuid().uppercaseText(), "4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501");
  EXPECT_EQ(object.required("at").instant(), Instant(12.5));
  EXPECT_THROW((void)object.required("bad").uuid(), DecodingError);
}

TEST(JsonReaderTest, ListDecodesEveryElementInOrder) {
  const JsonDocument document(std::string("[3, 1, 2]"));
  const auto values = document.root().list([](const JsonNode& n) { return n.integer(); });
  EXPECT_EQ(values, (std::vector<std::int64_t>{3, 1, 2}));
}

TEST(JsonReaderTest, DocumentsMayBeNestedOnOneThread) {
  const JsonDocument outer(std::string(R"({"inner":"[1]"})"));
  const JsonDocument inner(outer.root().object().required("inner").string());
  EXPECT_EQ(inner.root().list([](const JsonNode& n) { return n.integer(); }).size(), 1U);
  EXPECT_EQ(outer.root().object().required("inner").string(), "[1]");
}

}  // namespace
}  // namespace brindlet

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {
namespace {

TEST(JsonWriterTest, PrettyOutputIndentsByTwoSpacesInTheOrderWritten) {
  JsonWriter out;
  out.beginObject();
  out.key("b").integer(1);
  out.key("a").beginArray().boolean(true).null().endArray();
  out.key("empty").beginObject().endObject();
  out.key("none").beginArray().endArray();
  out.endObject();
  EXPECT_EQ(out.text(),
            "{\n  \"b\": 1,\n  \"a\": [\n    true,\n    null\n  ],\n  \"empty\": {},\n"
            "  \"none\": []\n}");
}

TEST(JsonWriterTest, CompactOutputHasNoWhiteSpace) {
  JsonWriter out(JsonWriter::Style::compact);
  out.beginObject().key("ok").boolean(false).key("list").beginArray().integer(-3).string("x");
  out.endArray().endObject();
  EXPECT_EQ(out.text(), R"({"ok":false,"list":[-3,"x"]})");
}

TEST(JsonWriterTest, EscapesQuotesBackslashesAndControlCharacters) {
  JsonWriter out(JsonWriter::Style::compact);
  out.string(std::string("q\" b\\ n\n r\r t\t b\b f\f nul\0 one\x01 del\x7f é", 38));
  EXPECT_EQ(out.text(), R"("q\" b\\ n\n r\r t\t b\b f\f nul\u0000 one\u0001 del)"
                        "\x7f"
                        R"( é")");
}

TEST(JsonWriterTest, EscapedTextReadsBackUnchanged) {
  std::string every;
  for (int c = 1; c < 128; ++c) every += static_cast<char>(c);
  every += "ünïcödé ✓";
  JsonWriter out(JsonWriter::Style::compact);
  out.string(every);
  const JsonDocument document(out.text());
  EXPECT_EQ(document.root().string(), every);
}

TEST(JsonWriterTest, DoublesUseTheShortestTextThatRoundTrips) {
  const double values[] = {0.1,
                           1.0 / 3.0,
                           1e21,
                           5e-324,
                           785000000.123456,
                           -0.0,
                           3.0,
                           std::numeric_limits<double>::max()};
  for (const double value : values) {
    JsonWriter out(JsonWriter::Style::compact);
    out.number(value);
    const JsonDocument document(out.text());
    EXPECT_EQ(document.root().number(), value) << out.text();
  }
  JsonWriter out(JsonWriter::Style::compact);
  out.beginArray().number(0.1).number(3.0).number(1795253400.5).endArray();
  EXPECT_EQ(out.text(), "[0.1,3,1795253400.5]");
}

TEST(JsonWriterTest, LargeWholeDoublesReadBackAsTheSameDouble) {
  for (const double value : {3555555555555555555550.0, -1e19, 1.8446744073709552e19, 1e300,
                             9.2233720368547758e18, 123456789012345678.0}) {
    JsonWriter out(JsonWriter::Style::compact);
    out.number(value);
    const JsonDocument document(out.text());
    EXPECT_EQ(document.root().number(), value) << out.text();
  }
  JsonWriter out(JsonWriter::Style::compact);
  out.number(3555555555555555555550.0);
  EXPECT_EQ(out.text(), "3.5555555555555557e+21");
}

TEST(JsonWriterTest, NumbersThatJsonCannotHoldAreRefused) {
  JsonWriter out;
  EXPECT_THROW(out.number(std::nan("")), EncodingError);
  EXPECT_THROW(out.number(std::numeric_limits<double>::infinity()), EncodingError);
}

TEST(JsonWriterTest, IntegersKeepEveryDigit) {
  JsonWriter out(JsonWriter::Style::compact);
  out.beginArray().integer(std::numeric_limits<std::int64_t>::min());
  out.integer(std::numeric_limits<std::int64_t>::max()).endArray();
  EXPECT_EQ(out.text(), "[-9223372036854775808,9223372036854775807]");
}

}  // namespace
}  // namespace brindlet

namespace brindlet {
namespace {

TEST(JsonWriterTest, EscapesAtEveryPositionOfALongText) {
  for (const char special : {'"', '\\', '\n', '\x1f', '\0'}) {
    for (std::size_t at = 0; at < 24; ++at) {
      std::string text = "abcdefghijklmnopqrstuvwx";
      text[at] = special;
      JsonWriter out(JsonWriter::Style::compact);
      out.string(text);
      EXPECT_EQ(out.text().size(),
                text.size() + 2 + (special == '\x1f' || special == '\0' ? 5 : 1));
      const JsonDocument document(out.text());
      EXPECT_EQ(document.root().string(), text) << at;
    }
  }
}

TEST(JsonWriterTest, MultiByteCharactersPassThroughUnescaped) {
  JsonWriter out(JsonWriter::Style::compact);
  out.string("ÄÖÜ ßø 日本語 😀 and more plain text");
  EXPECT_EQ(out.text(), "\"ÄÖÜ ßø 日本語 😀 and more plain text\"");
}

}  // namespace
}  // namespace brindlet

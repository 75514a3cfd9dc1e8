// Replays the saved corpus of the agent line fuzzer as an ordinary test, with the properties the
// fuzz target checks, so that every input that once found a new path keeps working.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TempDir.h"
#include "agent/AgentLineTransport.h"
#include "agent/AgentResponseEnvelope.h"
#include "support/JsonWriter.h"

namespace brindlet {
namespace {

TEST(AgentFuzzCorpusReplayTest, EveryLineIsEmptyInvalidOrAnEnvelopeThatRoundTrips) {
  const std::vector<std::filesystem::path> inputs =
      testing::filesIn(testing::testDataFolder() / "fuzz" / "agent_line");
  ASSERT_GE(inputs.size(), 10U);
  std::size_t commands = 0;
  std::size_t invalid = 0;
  for (const std::filesystem::path& path : inputs) {
    SCOPED_TRACE(path.filename().string());
    const AgentLineTransport::Line read = AgentLineTransport::read(testing::readBytes(path));
    if (read.kind != AgentLineTransport::Line::Kind::command) {
      invalid += read.kind == AgentLineTransport::Line::Kind::invalid ? 1 : 0;
      EXPECT_EQ(read.envelope, std::nullopt);
      continue;
    }
    ++commands;
    JsonWriter out(JsonWriter::Style::compact);
    toJson(out, *read.envelope);
    EXPECT_EQ(decodeAgentCommandEnvelope(out.text()), read.envelope);
    const AgentResponseEnvelope response{.version = read.envelope->version,
                                         .ok = true,
                                         .revision = read.envelope->expectedRevision,
                                         .result = JSONValue::ofObject(read.envelope->payload)};
    EXPECT_EQ(decodeAgentResponseEnvelope(AgentLineTransport::write(response)), response);
  }
  EXPECT_GT(commands, 0U);
  EXPECT_GT(invalid, 0U);
}

}  // namespace
}  // namespace brindlet

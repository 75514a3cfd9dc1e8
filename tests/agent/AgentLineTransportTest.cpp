#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "AgentServiceFixture.h"
#include "Builders.h"
#include "TempDir.h"
#include "agent/AgentLineTransport.h"
#include "agent/AgentResults.h"

namespace brindlet {
namespace {

using testing::AgentServiceTest;
using testing::kTestNow;
using Kind = AgentLineTransport::Line::Kind;

const std::string kInvalid(AgentLineTransport::kInvalidEnvelopeLine);

class FixedClock : public Clock {
 public:
  [[nodiscard]] Instant now() const override { return kTestNow; }
};

TEST(AgentLineTransportTest, OnlyALineWithNoCharactersIsEmpty) {
  EXPECT_EQ(AgentLineTransport::read("").kind, Kind::empty);
  EXPECT_EQ(AgentLineTransport::read("\r").kind, Kind::empty);
  EXPECT_EQ(AgentLineTransport::read(" ").kind, Kind::invalid);
  EXPECT_EQ(AgentLineTransport::read("\t").kind, Kind::invalid);
}

TEST(AgentLineTransportTest, LinesThatAreNotEnvelopesAreInvalid) {
  for (const char* line : {"x", "{", "{}", "[]", "null", "1", R"("tasks.list")",
                           R"({"version":1,"command":"tasks.list"}{})",
                           R"({"version":1,"command":"tasks.list","payload":7})",
                           "{\"version\":1,\"command\":\"\xff\"}"}) {
    const AgentLineTransport::Line read = AgentLineTransport::read(line);
    EXPECT_EQ(read.kind, Kind::invalid) << line;
    EXPECT_EQ(read.envelope, std::nullopt) << line;
  }
}

TEST(AgentLineTransportTest, EnvelopeLineIsReadWithOrWithoutCarriageReturn) {
  const std::string line = R"({"version":1,"command":"tasks.list","expectedRevision":4})";
  for (const std::string& text : {line, line + "\r", "  " + line + "  "}) {
    const AgentLineTransport::Line read = AgentLineTransport::read(text);
    ASSERT_EQ(read.kind, Kind::command) << text;
    EXPECT_EQ(read.envelope,
              (AgentCommandEnvelope{.version = 1, .command = "tasks.list", .expectedRevision = 4}));
  }
}

TEST(AgentLineTransportTest, InvalidEnvelopeAnswerIsAResponseEnvelope) {
  EXPECT_EQ(
      decodeAgentResponseEnvelope(kInvalid),
      (AgentResponseEnvelope{.version = 1,
                             .ok = false,
                             .error = AgentCommandError{
                                 "invalid_envelope", "The command envelope could not be read."}}));
}

TEST_F(AgentServiceTest, ServeAnswersEachLineInOrderAndSkipsEmptyOnes) {
  std::istringstream input(
      "{\"version\":1,\"command\":\"tasks.list\"}\n"
      "\n"
      "not json\n"
      "{\"version\":1,\"command\":\"tasks.create\",\"expectedRevision\":0,"
      "\"payload\":{\"title\":\"Report\"}}\r\n"
      "{\"version\":1,\"command\":\"tasks.create\",\"expectedRevision\":0,"
      "\"payload\":{\"title\":\"Again\"}}");
  std::ostringstream output;
  AgentLineTransport::serve(service_, input, output, FixedClock());

  const FocusTask report = stored().tasks.at(0);
  EXPECT_EQ(report.createdAt, kTestNow);
  EXPECT_EQ(output.str(),
            R"({"version":1,"ok":true,"revision":0,"result":[]})"
            "\n" +
                kInvalid + "\n" +
                AgentLineTransport::write(
                    {.version = 1, .ok = true, .revision = 1, .result = jsonValue(report)}) +
                "\n"
                R"({"version":1,"ok":false,"revision":1,"result":"Expected 0, current 1.",)"
                R"("error":{"code":"revision_conflict","message":"Refresh and retry."}})"
                "\n");
}

TEST_F(AgentServiceTest, AnswerWritesDatesAsTextAndIdentifiersInCapitals) {
  PersistedState state = PersistedState::initial();
  state.tasks = {testing::makeTask().titled("Report").withEveryField()};
  seed(state);
  const auto line =
      AgentLineTransport::answer(service_, R"({"version":1,"command":"tasks.list"})", kTestNow);
  ASSERT_TRUE(line);
  EXPECT_NE(line->find(R"("createdAt":"2026-11-21T09:30:00Z")"), std::string::npos);
  EXPECT_NE(line->find(state.tasks[0].id.uppercaseText()), std::string::npos);
  EXPECT_EQ(line->find('\n'), std::string::npos);
}

}  // namespace
}  // namespace brindlet

// brindlet-agent as a client sees it: a child process over a temporary home folder, fed lines on
// its standard input and read line by line from its standard output.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "AgentProcess.h"
#include "Builders.h"
#include "TempDir.h"
#include "agent/AgentLineTransport.h"
#include "agent/AgentResponseEnvelope.h"
#include "agent/AgentResults.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "persistence/TaskStoreError.h"
#include "support/Calendar.h"
#include "support/Clock.h"

namespace brindlet {
namespace {

using testing::AgentProcess;

const std::string kInvalid(AgentLineTransport::kInvalidEnvelopeLine);

AgentResponseEnvelope decoded(const std::optional<std::string>& line) {
  if (!line) {
    ADD_FAILURE() << "no line";
    return {};
  }
  const auto response = decodeAgentResponseEnvelope(*line);
  if (!response) ADD_FAILURE() << "not a response: " << *line;
  return response.value_or(AgentResponseEnvelope{});
}

AgentResponseEnvelope ask(AgentProcess& agent, std::string_view line) {
  agent.send(line);
  return decoded(agent.readLine());
}

AgentResponseEnvelope success(std::int64_t revision,
                              std::optional<JSONValue> result = std::nullopt) {
  return {.version = 1, .ok = true, .revision = revision, .result = std::move(result)};
}

const FocusTask& taskTitled(const PersistedState& state, std::string_view title) {
  for (const FocusTask& task : state.tasks) {
    if (task.title == title) return task;
  }
  ADD_FAILURE() << "no task " << title;
  static const FocusTask kNone;
  return kNone;
}

std::string dayText(const CivilDate& day) {
  char text[32];
  std::snprintf(text, sizeof text, "%04lld-%02lld-%02lld", static_cast<long long>(day.year),
                static_cast<long long>(day.month), static_cast<long long>(day.day));
  return text;
}

TEST(BrindletAgentProcessTest, HelpNamesEveryCommandAndExitsZero) {
  testing::TempDir home;
  AgentProcess agent(home.path(), {"--help"});
  const std::string help = agent.readRest();
  EXPECT_EQ(agent.wait(), 0);
  EXPECT_NE(help.find("Usage: brindlet-agent"), std::string::npos);
  for (const std::string_view command : AgentCommandService::kCommands) {
    EXPECT_NE(help.find("  " + std::string(command) + "\n"), std::string::npos) << command;
  }
  EXPECT_FALSE(std::filesystem::exists(home / "data"));
}

TEST(BrindletAgentProcessTest, AnyOtherArgumentIsRefused) {
  testing::TempDir home;
  AgentProcess agent(home.path(), {"--version"});
  EXPECT_EQ(agent.readRest(), "");
  EXPECT_EQ(agent.wait(), 2);
  EXPECT_EQ(testing::readBytes(AgentProcess::errorsFile(home.path())),
            "brindlet-agent takes no arguments but --help.\n");
}

TEST(BrindletAgentProcessTest, EndOfInputEndsTheProgramWithStatusZero) {
  testing::TempDir home;
  AgentProcess agent(home.path());
  agent.send("");
  agent.closeInput();
  EXPECT_EQ(agent.readRest(), "");
  EXPECT_EQ(agent.wait(), 0);
}

TEST(BrindletAgentProcessTest, UnreadableLinesAreAnsweredAndTheProgramGoesOn) {
  testing::TempDir home;
  AgentProcess agent(home.path());
  for (const char* line : {"{\"version\":1,\"command\":", "hello", "[]", "{\"version\":1}",
                           "{\"version\":1.5,\"command\":\"tasks.list\"}", " ", "null",
                           "{\"version\":1,\"command\":\"tasks.list\",\"payload\":[]}"}) {
    agent.send(line);
    EXPECT_EQ(agent.readLine(), kInvalid) << line;
  }
  agent.send("");
  agent.send("");
  agent.sendRaw("{\"version\":1,\"command\":\"tasks.list\"}\r\n");
  EXPECT_EQ(agent.readLine(), R"({"version":1,"ok":true,"revision":0,"result":[]})");
  // A last line without a line end is still a line.
  agent.sendRaw("{\"version\":3,\"command\":\"tasks.list\"}");
  agent.closeInput();
  EXPECT_EQ(
      agent.readRest(),
      R"({"version":1,"ok":false,"error":{"code":"unsupported_version","message":"Only command version 1 is supported."}})"
      "\n");
  EXPECT_EQ(agent.wait(), 0);
}

TEST(BrindletAgentProcessTest, StateFileThatCannotBeReadEndsTheProgramWithStatusOne) {
  testing::TempDir home;
  testing::writeBytes(AgentProcess::stateFile(home.path()), "{ this is not the plan");
  AgentProcess agent(home.path());
  EXPECT_EQ(agent.readRest(), "");
  EXPECT_EQ(agent.wait(), 1);
  EXPECT_TRUE(testing::readBytes(AgentProcess::errorsFile(home.path()))
                  .starts_with("Your Brindlet data could not be opened. The original file was "
                               "left untouched: "));
  EXPECT_EQ(testing::readBytes(AgentProcess::stateFile(home.path())), "{ this is not the plan");
}

TEST(BrindletAgentProcessTest, ScriptedConversationFromListToRefusals) {
  testing::TempDir home;
  const LocalStore local(AgentProcess::stateFile(home.path()));
  const Calendar utc = Calendar::gregorianUtc();
  const Instant started = SystemClock().now();
  const std::string today = dayText(utc.civilDate(started));
  AgentProcess agent(home.path());

  // An empty plan.
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.list"})"),
            success(0, JSONValue::ofArray({})));

  // Three tasks; the answer of each is the task as stored.
  agent.send("");
  AgentResponseEnvelope response =
      ask(agent, R"({"version":1,"command":"tasks.create","expectedRevision":0,"payload":)"
                 R"({"title":"Write the report","estimated_minutes":60,"priority":"high",)"
                 R"("planned_day":")" +
                     today + R"("}})");
  const FocusTask report = taskTitled(local.load(), "Write the report");
  EXPECT_EQ(response, success(1, jsonValue(report)));
  EXPECT_EQ(report.priority, TaskPriority::high);
  EXPECT_EQ(report.estimatedMinutes, 60);
  EXPECT_GE(report.createdAt.secondsSinceReferenceDate(),
            std::floor(started.secondsSinceReferenceDate()));
  const JSONValue& createdAt = *response.result->object()->find("createdAt");
  EXPECT_EQ(createdAt.string(), report.createdAt.iso8601());

  response = ask(agent, R"({"version":1,"command":"tasks.create","expectedRevision":1,"payload":)"
                        R"({"title":"Plan the quarter","estimated_minutes":500,"planned_day":")" +
                            today + R"("}})");
  const FocusTask quarter = taskTitled(local.load(), "Plan the quarter");
  EXPECT_EQ(response, success(2, jsonValue(quarter)));
  EXPECT_EQ(quarter.priority, TaskPriority::normal);

  response = ask(agent, R"({"version":1,"command":"tasks.create","expectedRevision":2,)"
                        R"("payload":{"title":"Call the bank"}})");
  const FocusTask bank = taskTitled(local.load(), "Call the bank");
  EXPECT_EQ(response, success(3, jsonValue(bank)));
  EXPECT_FALSE(response.result->object()->contains("plannedDay"));
  EXPECT_FALSE(response.result->object()->contains("estimatedMinutes"));

  // An update, then the life of the first task.
  const std::string bankID = bank.id.uppercaseText();
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.update","expectedRevision":3,"payload":)"
                       R"({"task_id":")" +
                           bankID + R"(","title":"Call the bank again","priority":"low"}})"),
            success(4));
  EXPECT_EQ(taskTitled(local.load(), "Call the bank again").priority, TaskPriority::low);

  const std::string reportID = report.id.uppercaseText();
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.start","expectedRevision":4,"payload":)"
                       R"({"task_id":")" +
                           reportID + R"(","mode":"strict"}})"),
            success(5));
  EXPECT_EQ(taskTitled(local.load(), "Write the report").status, TaskStatus::active);
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.pause","expectedRevision":5})"),
            success(6));
  EXPECT_EQ(taskTitled(local.load(), "Write the report").status, TaskStatus::paused);
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.resume","expectedRevision":6})"),
            success(7));
  EXPECT_EQ(taskTitled(local.load(), "Write the report").status, TaskStatus::active);
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"tasks.complete","expectedRevision":7})"),
            success(8));
  const FocusTask done = taskTitled(local.load(), "Write the report");
  EXPECT_EQ(done.status, TaskStatus::completed);
  EXPECT_TRUE(done.completedAt);

  // The review of this week.
  response = ask(agent, R"({"version":1,"command":"review.get"})");
  EXPECT_TRUE(response.ok);
  EXPECT_EQ(response.revision, 8);
  EXPECT_EQ(response.error, std::nullopt);
  ASSERT_TRUE(response.result && response.result->object());
  const JSONObject& review = *response.result->object();
  EXPECT_EQ(*review.find("plannedTaskCount"), JSONValue::ofNumber(2));
  EXPECT_EQ(*review.find("completedTaskCount"), JSONValue::ofNumber(1));
  EXPECT_EQ(*review.find("completionRate"), JSONValue::ofNumber(0.5));
  EXPECT_EQ(*review.find("plannedMinutes"), JSONValue::ofNumber(560));
  EXPECT_EQ(*review.find("completedByPriority"),
            JSONValue::ofArray({JSONValue::ofString("high"), JSONValue::ofNumber(1)}));
  EXPECT_EQ(*review.find("completedTaskIDs"), JSONValue::ofArray({JSONValue::ofString(reportID)}));
  EXPECT_EQ(*review.find("carryoverTaskIDs"),
            JSONValue::ofArray({JSONValue::ofString(quarter.id.uppercaseText())}));
  EXPECT_EQ(review.size(), 12U);

  // Proposals: the overloaded day gives at least one, stored as the answer shows them.
  response = ask(agent, R"({"version":1,"command":"proposals.generate","expectedRevision":8})");
  const std::vector<PlanningProposal> proposals = local.load().proposals;
  ASSERT_FALSE(proposals.empty());
  JSONValue::Array expected;
  for (const PlanningProposal& proposal : proposals) expected.push_back(jsonValue(proposal));
  EXPECT_EQ(response, success(9, JSONValue::ofArray(expected)));
  EXPECT_EQ(proposals[0].taskID, quarter.id);
  EXPECT_EQ(ask(agent, R"({"version":1,"command":"proposals.list"})"),
            success(9, JSONValue::ofArray(expected)));

  // What an agent may not do, and what it got wrong.
  agent.send(R"({"version":1,"command":"proposals.approve","expectedRevision":9,)"
             R"("userApproval":true,"payload":{"proposal_id":")" +
             proposals[0].id.uppercaseText() + R"("}})");
  EXPECT_EQ(agent.readLine(),
            R"({"version":1,"ok":false,"error":{"code":"user_approval_required","message":)"
            R"("Approve this recommendation in Tolvane before applying it."}})");
  agent.send(R"({"version":1,"command":"tasks.update","expectedRevision":2,"payload":)"
             R"({"task_id":")" +
             bankID + R"(","title":"Too late"}})");
  EXPECT_EQ(agent.readLine(),
            R"({"version":1,"ok":false,"revision":9,"result":"Expected 2, current 9.",)"
            R"("error":{"code":"revision_conflict","message":"Refresh and retry."}})");
  agent.send(R"({"version":1,"command":"tasks.create","expectedRevision":9,"payload":{"title":)");
  EXPECT_EQ(agent.readLine(), kInvalid);
  agent.send(R"({"version":1,"command":"tasks.delete","expectedRevision":9})");
  EXPECT_EQ(agent.readLine(),
            R"({"version":1,"ok":false,"error":{"code":"unknown_command","message":)"
            R"("Unknown command: tasks.delete"}})");

  agent.closeInput();
  EXPECT_EQ(agent.readRest(), "");
  EXPECT_EQ(agent.wait(), 0);
  const PersistedState final = local.load();
  EXPECT_EQ(final.revision, 9);
  EXPECT_EQ(final.tasks.size(), 3U);
  EXPECT_EQ(final.proposals[0].status, ProposalStatus::pending);
  EXPECT_EQ(taskTitled(final, "Call the bank again").title, "Call the bank again");
}

// The agent and the app's store commit on one file at the same moment. Each side retries a
// refused change at the revision it is told; nothing that either side saw committed is lost.
TEST(BrindletAgentProcessTest, AgentAndAnotherWriterNeverLoseACommittedChange) {
  constexpr int kChangesEach = 25;
  testing::TempDir home;
  const LocalStore local(AgentProcess::stateFile(home.path()));
  AgentProcess agent(home.path());
  ASSERT_EQ(ask(agent, R"({"version":1,"command":"tasks.list"})").revision, 0);

  std::vector<std::string> agentTitles;
  std::vector<std::string> conflictsOutOfOrder;
  int agentConflicts = 0;
  std::thread client([&] {
    std::int64_t revision = 0;
    for (int i = 0; i < kChangesEach; ++i) {
      const std::string title = "Agent " + std::to_string(i);
      while (true) {
        const AgentResponseEnvelope response =
            ask(agent, R"({"version":1,"command":"tasks.create","expectedRevision":)" +
                           std::to_string(revision) + R"(,"payload":{"title":")" + title + "\"}}");
        if (response.ok) {
          agentTitles.push_back(title);
          revision = *response.revision;
          break;
        }
        ++agentConflicts;
        // A refusal names the revision the file held, which is past the one sent.
        const std::string detail = "Expected " + std::to_string(revision) + ", current " +
                                   std::to_string(response.revision.value_or(-1)) + ".";
        if (!response.error || response.error->code != "revision_conflict" || !response.revision ||
            *response.revision <= revision || response.result != JSONValue::ofString(detail)) {
          conflictsOutOfOrder.push_back(AgentLineTransport::write(response));
          return;
        }
        revision = *response.revision;
      }
    }
  });

  TaskStore store(local);
  std::vector<std::string> ownTitles;
  for (int i = 0; i < kChangesEach; ++i) {
    const FocusTask task("Own " + std::to_string(i), testing::kTestNow);
    while (true) {
      try {
        store.transact(store.snapshot().revision(), MutationSource::user, "task.create", task.id,
                       testing::kTestNow,
                       [&](PersistedState& state) { state.tasks.push_back(task); });
        ownTitles.push_back(task.title);
        break;
      } catch (const TaskStoreError&) {
        // The agent got in first; the next snapshot holds its change.
      }
    }
  }
  client.join();
  agent.closeInput();
  EXPECT_EQ(agent.wait(), 0);

  EXPECT_EQ(conflictsOutOfOrder, std::vector<std::string>{});
  const PersistedState final = local.load();
  std::set<std::string> titles;
  for (const FocusTask& task : final.tasks) titles.insert(task.title);
  for (const std::string& title : agentTitles) EXPECT_TRUE(titles.contains(title)) << title;
  for (const std::string& title : ownTitles) EXPECT_TRUE(titles.contains(title)) << title;
  EXPECT_EQ(final.tasks.size(), 2U * kChangesEach);
  EXPECT_EQ(final.revision, 2 * kChangesEach);
  EXPECT_EQ(final.auditEvents.size(), 2U * kChangesEach);
  RecordProperty("agentConflicts", agentConflicts);
}

}  // namespace
}  // namespace brindlet

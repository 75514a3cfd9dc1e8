#include <gtest/gtest.h>

#include "AgentServiceFixture.h"
#include "Builders.h"
#include "agent/AgentResults.h"

namespace brindlet {
namespace {

using testing::accepted;
using testing::AgentServiceTest;
using testing::command;
using testing::kTestNow;
using testing::makeTask;
using testing::refusal;

const std::string kGoodId = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";

TEST_F(AgentServiceTest, UnsupportedVersionComesBeforeUnknownCommand) {
  const AgentCommandEnvelope envelope{.version = 2, .command = "no.such"};
  EXPECT_EQ(execute(envelope),
            refusal("unsupported_version", "Only command version 1 is supported."));
}

TEST_F(AgentServiceTest, CommandNamesAreMatchedExactlyWithCase) {
  EXPECT_EQ(execute(command("Tasks.List")),
            refusal("unknown_command", "Unknown command: Tasks.List"));
  EXPECT_EQ(execute(command("tasks.list ")),
            refusal("unknown_command", "Unknown command: tasks.list "));
}

TEST_F(AgentServiceTest, UntrustedAgentCannotApproveEvenWithUserApprovalAndGoodArguments) {
  PersistedState state = PersistedState::initial();
  const FocusTask task = makeTask().plannedOn({2026, 11, 21});
  state.tasks = {task};
  state.proposals = {PlanningProposal{.kind = ProposalKind::reschedule,
                                      .taskID = task.id,
                                      .reason = "Too much on Saturday.",
                                      .originalPlannedDay = LocalDay{2026, 11, 21},
                                      .suggestedPlannedDay = LocalDay{2026, 11, 22},
                                      .createdAt = kTestNow}};
  seed(state);
  const std::string payload = R"({"proposal_id":")" + state.proposals[0].id.uppercaseText() + "\"}";

  EXPECT_EQ(execute(command("proposals.approve", revision(), payload, true)),
            refusal("user_approval_required",
                    "Approve this recommendation in Tolvane before applying it."));
  EXPECT_EQ(execute(command("proposals.dismiss", revision(), payload, true)),
            refusal("user_approval_required", "Dismiss this recommendation in Tolvane."));
  EXPECT_EQ(stored().proposals[0].status, ProposalStatus::pending);
  EXPECT_EQ(stored().tasks[0].plannedDay, (LocalDay{2026, 11, 21}));
}

TEST_F(AgentServiceTest, TrustedInterfaceWithoutUserApprovalIsRefused) {
  EXPECT_EQ(trustedService_.execute(command("proposals.approve", 0, "{}", false), kTestNow),
            refusal("user_approval_required",
                    "Approve this recommendation in Tolvane before applying it."));
  EXPECT_EQ(trustedService_.execute(command("proposals.dismiss", 0, "{}", false), kTestNow),
            refusal("user_approval_required", "Dismiss this recommendation in Tolvane."));
}

TEST_F(AgentServiceTest, TrustedApprovalWithoutProposalIdOrRevisionSaysInvalidProposalId) {
  EXPECT_EQ(
      trustedService_.execute(command("proposals.approve", std::nullopt, "{}", true), kTestNow),
      refusal("invalid_payload", "Invalid proposal_id."));
}

TEST_F(AgentServiceTest, TrustedApprovalWithUserApprovalMovesTheTask) {
  PersistedState state = PersistedState::initial();
  const FocusTask task = makeTask().plannedOn({2026, 11, 21});
  state.tasks = {task};
  const PlanningProposal proposal{.taskID = task.id,
                                  .originalPlannedDay = LocalDay{2026, 11, 21},
                                  .suggestedPlannedDay = LocalDay{2026, 11, 23},
                                  .createdAt = kTestNow};
  state.proposals = {proposal};
  seed(state);
  const std::string payload = R"({"proposal_id":")" + proposal.id.uppercaseText() + "\"}";

  EXPECT_EQ(trustedService_.execute(command("proposals.approve", 0, payload, true), kTestNow),
            accepted(1));
  EXPECT_EQ(storedTask(task.id).plannedDay, (LocalDay{2026, 11, 23}));
  EXPECT_EQ(stored().auditEvents.back().source, MutationSource::user);
}

TEST_F(AgentServiceTest, StartChecksTaskIdBeforeRevisionAndUpdateChecksRevisionFirst) {
  const std::string payload = R"({"task_id":"not-a-uuid"})";
  EXPECT_EQ(execute(command("tasks.start", std::nullopt, payload)),
            refusal("invalid_payload", "Invalid task_id."));
  EXPECT_EQ(execute(command("tasks.update", std::nullopt, payload)),
            refusal("expected_revision_required", "Mutating commands require expected_revision."));
}

TEST_F(AgentServiceTest, EveryMutatingCommandNeedsARevision) {
  for (const char* name : {"tasks.create", "tasks.update", "tasks.pause", "tasks.resume",
                           "tasks.skip", "tasks.complete", "proposals.generate"}) {
    EXPECT_EQ(execute(command(name, std::nullopt, R"({"title":"x","task_id":")" + kGoodId + "\"}")),
              refusal("expected_revision_required", "Mutating commands require expected_revision."))
        << name;
  }
  EXPECT_EQ(execute(command("tasks.start", std::nullopt, R"({"task_id":")" + kGoodId + "\"}")),
            refusal("expected_revision_required", "Mutating commands require expected_revision."));
  EXPECT_TRUE(stored().auditEvents.empty());
}

TEST_F(AgentServiceTest, ConflictAnswersTheCurrentRevisionAndDetailAndChangesNothing) {
  PersistedState state = PersistedState::initial();
  state.revision = 9;
  const FocusTask task = makeTask().titled("Keep me");
  state.tasks = {task};
  seed(state);
  const std::string before = testing::readBytes(local_.url());

  const AgentResponseEnvelope response = execute(command(
      "tasks.update", 7, R"({"task_id":")" + task.id.uppercaseText() + R"(","title":"New"})"));

  EXPECT_EQ(response, (AgentResponseEnvelope{
                          .version = 1,
                          .ok = false,
                          .revision = 9,
                          .result = JSONValue::ofString("Expected 7, current 9."),
                          .error = AgentCommandError{"revision_conflict", "Refresh and retry."}}));
  EXPECT_EQ(testing::readBytes(local_.url()), before);
}

TEST_F(AgentServiceTest, StaleRevisionOnCreateWithBlankTitleIsAValidationError) {
  PersistedState state = PersistedState::initial();
  state.revision = 4;
  seed(state);
  EXPECT_EQ(execute(command("tasks.create", 1, R"({"title":"  "})")),
            refusal("validation_error", "The task details are invalid."));
  EXPECT_EQ(execute(command("tasks.create", 1, R"({"title":"Fine"})")).error->code,
            "revision_conflict");
}

TEST_F(AgentServiceTest, NullEstimateIsAnInvalidPayload) {
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":"Report","estimated_minutes":null})")),
            refusal("invalid_payload", "Invalid estimated_minutes."));
  EXPECT_TRUE(stored().tasks.empty());
}

TEST_F(AgentServiceTest, EstimateWithZeroFractionIsAcceptedAndAFractionRefused) {
  const AgentResponseEnvelope created =
      execute(command("tasks.create", 0, R"({"title":"Report","estimated_minutes":30.0})"));
  ASSERT_TRUE(created.ok);
  EXPECT_EQ(stored().tasks.at(0).estimatedMinutes, 30);
  EXPECT_EQ(*created.result->object()->find("estimatedMinutes"), JSONValue::ofNumber(30));

  EXPECT_EQ(execute(command("tasks.create", 1, R"({"title":"Report","estimated_minutes":30.5})")),
            refusal("invalid_payload", "Invalid estimated_minutes."));
  EXPECT_EQ(stored().tasks.size(), 1U);
}

TEST_F(AgentServiceTest, EstimateOutsideTheDayIsAValidationError) {
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":"Report","estimated_minutes":-5})")),
            refusal("validation_error", "The task details are invalid."));
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":"Report","estimated_minutes":1441})")),
            refusal("validation_error", "The task details are invalid."));
}

TEST_F(AgentServiceTest, MissingStringAndInvalidIdSayWhichKey) {
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":7})")),
            refusal("invalid_payload", "Missing title."));
  EXPECT_EQ(execute(command("tasks.update", 0, "{}")),
            refusal("invalid_payload", "Invalid task_id."));
  EXPECT_EQ(execute(command("tasks.update", 0, R"({"task_id":12})")),
            refusal("invalid_payload", "Invalid task_id."));
}

TEST_F(AgentServiceTest, EngineFailuresAreOperationFailedWithoutTheirOwnWords) {
  EXPECT_EQ(execute(command("tasks.pause", 0)),
            refusal("operation_failed", "The command could not be completed."));
  EXPECT_EQ(execute(command("tasks.complete", 0)),
            refusal("operation_failed", "The command could not be completed."));
  EXPECT_EQ(execute(command("tasks.resume", 0)),
            refusal("operation_failed", "The command could not be completed."));
  EXPECT_EQ(execute(command("tasks.skip", 0)),
            refusal("operation_failed", "The command could not be completed."));
}

TEST_F(AgentServiceTest, UnreadableStateFileFailsWritesAsOperationFailed) {
  testing::writeBytes(local_.url(), "{ not json");
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":"Report"})")),
            refusal("operation_failed", "The command could not be completed."));
}

TEST_F(AgentServiceTest, ReadingCommandsIgnoreRevisionAndPayload) {
  PersistedState state = PersistedState::initial();
  state.revision = 3;
  seed(state);
  for (const char* name : {"tasks.list", "review.get", "proposals.list"}) {
    const AgentResponseEnvelope response = execute(command(name, 99, R"({"task_id":5})"));
    EXPECT_TRUE(response.ok) << name;
    EXPECT_EQ(response.revision, 3) << name;
  }
}

}  // namespace
}  // namespace brindlet

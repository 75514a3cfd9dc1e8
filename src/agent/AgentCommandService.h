#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "agent/AgentCommandEnvelope.h"
#include "agent/AgentResponseEnvelope.h"
#include "agent/JSONValue.h"
#include "blocking/SessionEngine.h"
#include "flow/FocusCoordinator.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/TaskStore.h"
#include "records/DomainGroup.h"
#include "records/FocusTask.h"
#include "reminders/ReminderCoordinator.h"
#include "review/RecommendationEngine.h"
#include "support/Calendar.h"
#include "support/Instant.h"

namespace brindlet {

/// Who stands behind a service: an agent may only propose, while the desktop app may also
/// approve and dismiss recommendations, and then only for commands the user confirmed.
enum class ApprovalAuthority { untrustedAgent, trustedUserInterface };

/// The optional collaborators. Without a coordinator and a session engine a task with a
/// blocking group can't be started or resumed, and without reminders a task whose reminder
/// is on can't be completed: those commands send the client to the app instead.
struct AgentCommandServiceOptions {
  ApprovalAuthority approvalAuthority = ApprovalAuthority::untrustedAgent;
  FocusCoordinator* focusCoordinator = nullptr;
  SessionEngine* blocking = nullptr;
  ReminderCoordinator* reminders = nullptr;
};

/// Plans through the same engines as the app, for an automated client that sends versioned
/// JSON-shaped commands. Every change names the revision it was worked out from; the store
/// compares it. Never fails: every refusal and every error is a response with `ok` false.
/// Lives on the model thread, like the engines it calls.
class AgentCommandService {
 public:
  /// The thirteen commands, in the order they are matched.
  static constexpr std::array<std::string_view, 13> kCommands = {
      "tasks.list",       "tasks.create",       "tasks.update",   "tasks.start",
      "tasks.pause",      "tasks.resume",       "tasks.skip",     "tasks.complete",
      "review.get",       "proposals.generate", "proposals.list", "proposals.approve",
      "proposals.dismiss"};

  using Options = AgentCommandServiceOptions;

  /// The engines must outlive the service.
  AgentCommandService(TaskStore& store, TaskSessionEngine& sessions,
                      RecommendationEngine& recommendations,
                      Calendar calendar = Calendar::current(), Options options = {});

  [[nodiscard]] ApprovalAuthority approvalAuthority() const { return options_.approvalAuthority; }

  /// Runs one command at `now`, the time of every change it makes, and answers it.
  [[nodiscard]] AgentResponseEnvelope execute(const AgentCommandEnvelope& envelope, Instant now);

 private:
  enum class Command {
    tasksList,
    tasksCreate,
    tasksUpdate,
    tasksStart,
    tasksPause,
    tasksResume,
    tasksSkip,
    tasksComplete,
    reviewGet,
    proposalsGenerate,
    proposalsList,
    proposalsApprove,
    proposalsDismiss
  };

  [[nodiscard]] AgentResponseEnvelope run(Command command, const AgentCommandEnvelope& envelope,
                                          Instant now);

  [[nodiscard]] AgentResponseEnvelope listTasks();
  [[nodiscard]] AgentResponseEnvelope createTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope updateTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope startTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope pauseTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope resumeTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope skipTask(const AgentCommandEnvelope& envelope, Instant now);
  [[nodiscard]] AgentResponseEnvelope completeTask(const AgentCommandEnvelope& envelope,
                                                   Instant now);
  [[nodiscard]] AgentResponseEnvelope getReview(Instant now);
  [[nodiscard]] AgentResponseEnvelope generateProposals(const AgentCommandEnvelope& envelope,
                                                        Instant now);
  [[nodiscard]] AgentResponseEnvelope listProposals();
  [[nodiscard]] AgentResponseEnvelope approveProposal(const AgentCommandEnvelope& envelope,
                                                      Instant now);
  [[nodiscard]] AgentResponseEnvelope dismissProposal(const AgentCommandEnvelope& envelope,
                                                      Instant now);

  /// Starts a task that has a blocking group together with its blocking, or gives the refusal
  /// with `refusal` as its message when this service can't apply protection.
  [[nodiscard]] AgentResponseEnvelope startBlockedTask(const FocusTask& task,
                                                       const AgentCommandEnvelope& envelope,
                                                       std::int64_t revision,
                                                       std::int64_t snapshotRevision,
                                                       std::string_view refusal, Instant now);

  TaskStore& store_;
  TaskSessionEngine& sessions_;
  RecommendationEngine& recommendations_;
  Calendar calendar_;
  Options options_;
};

}  // namespace brindlet

#include "agent/AgentCommandService.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "agent/AgentResults.h"
#include "agent/AgentServiceError.h"
#include "flow/PlannerEngine.h"
#include "flow/TaskSessionError.h"
#include "persistence/TaskStoreError.h"
#include "records/BlockSession.h"
#include "support/Text.h"

namespace brindlet {
namespace {

constexpr std::int64_t kVersion = 1;
constexpr std::int64_t kDefaultSessionMinutes = 25;

constexpr std::string_view kApproveRefusal =
    "Approve this recommendation in Tolvane before applying it.";
constexpr std::string_view kDismissRefusal = "Dismiss this recommendation in Tolvane.";
constexpr std::string_view kStartRefusal =
    "Start this blocked task through Tolvane so protection is applied.";
constexpr std::string_view kResumeRefusal =
    "Resume this blocked task through Tolvane so protection is applied.";
constexpr std::string_view kReminderRefusal =
    "Complete this task in Tolvane so its pending reminder is cancelled.";

AgentResponseEnvelope success(std::int64_t revision, std::optional<JSONValue> value) {
  return {.version = kVersion, .ok = true, .revision = revision, .result = std::move(value)};
}

AgentResponseEnvelope failure(std::string_view code, std::string_view message,
                              std::optional<std::int64_t> revision = std::nullopt,
                              std::optional<std::string> detail = std::nullopt) {
  AgentResponseEnvelope response{.version = kVersion, .ok = false, .revision = revision};
  if (detail) response.result = JSONValue::ofString(std::move(*detail));
  response.error = AgentCommandError{std::string(code), std::string(message)};
  return response;
}

std::int64_t requireRevision(const AgentCommandEnvelope& envelope) {
  if (!envelope.expectedRevision) throw AgentServiceError::expectedRevisionRequired();
  return *envelope.expectedRevision;
}

// An empty text passes: whether it makes a valid title is the task's own rule.
std::string requireString(std::string_view key, const JSONObject& payload) {
  const JSONValue* value = payload.find(key);
  auto text = value != nullptr ? value->string() : std::nullopt;
  if (!text) throw AgentServiceError::invalidPayload("Missing " + std::string(key) + ".");
  return std::move(*text);
}

Uuid requireUUID(std::string_view key, const JSONObject& payload) {
  const JSONValue* value = payload.find(key);
  const auto text = value != nullptr ? value->string() : std::nullopt;
  const auto id = text ? Uuid::parse(*text) : std::nullopt;
  if (!id) throw AgentServiceError::invalidPayload("Invalid " + std::string(key) + ".");
  return *id;
}

// A key that is there must hold a whole number; null is no way of leaving it out.
std::optional<std::int64_t> optionalInt(std::string_view key, const JSONObject& payload) {
  const JSONValue* value = payload.find(key);
  if (value == nullptr) return std::nullopt;
  const auto whole = value->integer();
  if (!whole) throw AgentServiceError::invalidPayload("Invalid " + std::string(key) + ".");
  return whole;
}

std::optional<std::string> optionalString(std::string_view key, const JSONObject& payload) {
  const JSONValue* value = payload.find(key);
  return value != nullptr ? value->string() : std::nullopt;
}

// A piece of a day's text read as a base-10 integer: digits with an optional leading plus.
std::optional<std::int64_t> readWholeNumber(std::string_view piece) {
  if (piece.starts_with('+')) piece.remove_prefix(1);
  if (piece.empty()) return std::nullopt;
  std::int64_t value = 0;
  for (const char c : piece) {
    if (c < '0' || c > '9') return std::nullopt;
    const int digit = c - '0';
    if (value > (std::numeric_limits<std::int64_t>::max() - digit) / 10) return std::nullopt;
    value = value * 10 + digit;
  }
  return value;
}

// Deliberately forgiving: the pieces between dashes that read as numbers are kept, and three
// of them make a day, unchecked, so "2026-xx-01-05" is 5 January 2026 and "2026-02-30" stays
// as written.
std::optional<LocalDay> parseDay(std::string_view text) {
  std::vector<std::int64_t> numbers;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t dash = std::min(text.find('-', start), text.size());
    if (const auto number = readWholeNumber(text.substr(start, dash - start))) {
      numbers.push_back(*number);
    }
    start = dash + 1;
  }
  if (numbers.size() != 3) return std::nullopt;
  return LocalDay(numbers[0], numbers[1], numbers[2]);
}

TaskPriority priorityIn(const JSONObject& payload, TaskPriority fallback) {
  const auto text = optionalString("priority", payload);
  return text ? kTaskPriorityText.parse(*text).value_or(fallback) : fallback;
}

const FocusTask* findTask(const std::vector<FocusTask>& tasks, const Uuid& id) {
  const auto found = std::ranges::find(tasks, id, &FocusTask::id);
  return found == tasks.end() ? nullptr : &*found;
}

const FocusTask* firstWithStatus(const std::vector<FocusTask>& tasks, TaskStatus status) {
  const auto found = std::ranges::find(tasks, status, &FocusTask::status);
  return found == tasks.end() ? nullptr : &*found;
}

JSONValue tasksValue(const std::vector<FocusTask>& tasks) {
  JSONValue::Array items;
  items.reserve(tasks.size());
  for (const FocusTask& task : tasks) items.push_back(jsonValue(task));
  return JSONValue::ofArray(std::move(items));
}

JSONValue proposalsValue(const std::vector<PlanningProposal>& proposals) {
  JSONValue::Array items;
  items.reserve(proposals.size());
  for (const PlanningProposal& proposal : proposals) items.push_back(jsonValue(proposal));
  return JSONValue::ofArray(std::move(items));
}

}  // namespace

AgentCommandService::AgentCommandService(TaskStore& store, TaskSessionEngine& sessions,
                                         RecommendationEngine& recommendations, Calendar calendar,
                                         Options options)
    : store_(store),
      sessions_(sessions),
      recommendations_(recommendations),
      calendar_(std::move(calendar)),
      options_(options) {}

AgentResponseEnvelope AgentCommandService::execute(const AgentCommandEnvelope& envelope,
                                                   Instant now) {
  if (envelope.version != kVersion) {
    return failure("unsupported_version", "Only command version 1 is supported.");
  }
  const auto match = std::ranges::find(kCommands, envelope.command);
  if (match == kCommands.end()) {
    return failure("unknown_command", "Unknown command: " + envelope.command);
  }
  const auto command = static_cast<Command>(match - kCommands.begin());

  // Ahead of any look at the payload or the revision, so that an agent learns nothing of a
  // proposal it may not act on.
  const bool approves = command == Command::proposalsApprove;
  if (approves || command == Command::proposalsDismiss) {
    const bool approvedByUser =
        options_.approvalAuthority == ApprovalAuthority::trustedUserInterface &&
        envelope.userApproval;
    if (!approvedByUser) {
      return failure("user_approval_required", approves ? kApproveRefusal : kDismissRefusal);
    }
  }

  try {
    return run(command, envelope, now);
  } catch (const ProductivityValidationError&) {
    return failure("validation_error", "The task details are invalid.");
  } catch (const TaskStoreError& error) {
    return failure("revision_conflict", "Refresh and retry.", error.actual(),
                   "Expected " + std::to_string(error.expected()) + ", current " +
                       std::to_string(error.actual()) + ".");
  } catch (const AgentServiceError& error) {
    if (error.which() == AgentServiceError::Case::invalidPayload) {
      return failure("invalid_payload", error.message());
    }
    return failure("expected_revision_required", "Mutating commands require expected_revision.");
  } catch (...) {
    // The failure's own words stay inside: they may name files and folders of this machine.
    return failure("operation_failed", "The command could not be completed.");
  }
}

AgentResponseEnvelope AgentCommandService::run(Command command,
                                               const AgentCommandEnvelope& envelope, Instant now) {
  switch (command) {
    case Command::tasksList:
      return listTasks();
    case Command::tasksCreate:
      return createTask(envelope, now);
    case Command::tasksUpdate:
      return updateTask(envelope, now);
    case Command::tasksStart:
      return startTask(envelope, now);
    case Command::tasksPause:
      return pauseTask(envelope, now);
    case Command::tasksResume:
      return resumeTask(envelope, now);
    case Command::tasksSkip:
      return skipTask(envelope, now);
    case Command::tasksComplete:
      return completeTask(envelope, now);
    case Command::reviewGet:
      return getReview(now);
    case Command::proposalsGenerate:
      return generateProposals(envelope, now);
    case Command::proposalsList:
      return listProposals();
    case Command::proposalsApprove:
      return approveProposal(envelope, now);
    case Command::proposalsDismiss:
      return dismissProposal(envelope, now);
  }
  return failure("operation_failed", "The command could not be completed.");
}

AgentResponseEnvelope AgentCommandService::listTasks() {
  const TaskStoreSnapshot snapshot = store_.snapshot();
  return success(snapshot.revision(), tasksValue(snapshot.state().tasks));
}

AgentResponseEnvelope AgentCommandService::createTask(const AgentCommandEnvelope& envelope,
                                                      Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const std::string title = requireString("title", envelope.payload);
  const auto estimate = optionalInt("estimated_minutes", envelope.payload);
  // An unknown priority or an unreadable day is no error: the task is simply made without it.
  const TaskPriority priority = priorityIn(envelope.payload, TaskPriority::normal);
  const auto dayText = optionalString("planned_day", envelope.payload);
  const std::optional<LocalDay> plannedDay = dayText ? parseDay(*dayText) : std::nullopt;

  // The position is worked out from a snapshot; the revision check of the transaction makes it
  // safe, since any change in between refuses the commit.
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const std::int64_t position =
      PlannerEngine::nextManualPosition(snapshot.state().tasks, plannedDay, priority);
  // Built and validated before the transaction, so a blank title is refused whatever the
  // revision.
  const FocusTask task(title, now,
                       {.plannedDay = plannedDay,
                        .estimatedMinutes = estimate,
                        .priority = priority,
                        .manualPosition = position});
  const TaskStoreSnapshot committed =
      store_.transact(revision, MutationSource::agent, "task.create", task.id, now,
                      [&](PersistedState& state) { state.tasks.push_back(task); });
  return success(committed.revision(), jsonValue(task));
}

AgentResponseEnvelope AgentCommandService::updateTask(const AgentCommandEnvelope& envelope,
                                                      Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const Uuid taskID = requireUUID("task_id", envelope.payload);
  const JSONObject& payload = envelope.payload;
  // The task is looked up inside the transaction, after the store has compared the revision:
  // a stale revision is reported as such even for a task that doesn't exist.
  const TaskStoreSnapshot committed = store_.transact(
      revision, MutationSource::agent, "task.update", taskID, now, [&](PersistedState& state) {
        const auto found = std::ranges::find(state.tasks, taskID, &FocusTask::id);
        if (found == state.tasks.end()) throw AgentServiceError::invalidPayload("Task not found.");
        FocusTask& task = *found;
        if (const auto title = optionalString("title", payload)) {
          task.title = std::string(trimmedWhitespace(*title));
        }
        // An estimate can be changed here but never cleared: null is refused like any other
        // value that isn't a whole number.
        if (payload.contains("estimated_minutes")) {
          task.estimatedMinutes = optionalInt("estimated_minutes", payload);
        }
        task.priority = priorityIn(payload, task.priority);
        // An unreadable day, the empty text among them, unplans the task.
        if (const auto day = optionalString("planned_day", payload))
          task.plannedDay = parseDay(*day);
        task.updatedAt = now;
      });
  return success(committed.revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::startTask(const AgentCommandEnvelope& envelope,
                                                     Instant now) {
  const Uuid taskID = requireUUID("task_id", envelope.payload);
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const FocusTask* task = findTask(snapshot.state().tasks, taskID);
  if (task == nullptr) throw AgentServiceError::invalidPayload("Task not found.");
  if (!task->blockingGroupID) {
    return success(sessions_.start(taskID, now, revision).revision(), std::nullopt);
  }
  return startBlockedTask(*task, envelope, revision, snapshot.revision(), kStartRefusal, now);
}

AgentResponseEnvelope AgentCommandService::startBlockedTask(const FocusTask& task,
                                                            const AgentCommandEnvelope& envelope,
                                                            std::int64_t revision,
                                                            std::int64_t snapshotRevision,
                                                            std::string_view refusal, Instant now) {
  // A blocked task never starts without its protection.
  if (options_.focusCoordinator == nullptr || options_.blocking == nullptr) {
    return failure("blocking_requires_app", refusal, snapshotRevision);
  }
  const std::optional<DomainGroup> group = options_.blocking->group(*task.blockingGroupID);
  if (!group) return failure("blocking_requires_app", refusal, snapshotRevision);

  const auto modeText = optionalString("mode", envelope.payload);
  const SessionMode mode = modeText
                               ? kSessionModeText.parse(*modeText).value_or(SessionMode::flexible)
                               : SessionMode::flexible;
  // The whole estimate, even for a resumed task that has used part of it already.
  const std::int64_t minutes =
      std::max<std::int64_t>(1, task.estimatedMinutes.value_or(kDefaultSessionMinutes));
  const double duration = static_cast<double>(minutes) * 60;
  const TaskStoreSnapshot committed =
      options_.focusCoordinator->start(task.id, group, duration, mode, now, revision);
  return success(committed.revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::pauseTask(const AgentCommandEnvelope& envelope,
                                                     Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot committed = options_.focusCoordinator != nullptr
                                          ? options_.focusCoordinator->pause(now, revision)
                                          : sessions_.pause(now, revision);
  return success(committed.revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::resumeTask(const AgentCommandEnvelope& envelope,
                                                      Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const FocusTask* task = firstWithStatus(snapshot.state().tasks, TaskStatus::paused);
  if (task == nullptr) throw TaskSessionError(TaskSessionError::Case::noActiveTask);
  if (!task->blockingGroupID) {
    return success(sessions_.resume(now, revision).revision(), std::nullopt);
  }
  return startBlockedTask(*task, envelope, revision, snapshot.revision(), kResumeRefusal, now);
}

AgentResponseEnvelope AgentCommandService::skipTask(const AgentCommandEnvelope& envelope,
                                                    Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot committed = options_.focusCoordinator != nullptr
                                          ? options_.focusCoordinator->skip(now, revision)
                                          : sessions_.skip(now, revision);
  return success(committed.revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::completeTask(const AgentCommandEnvelope& envelope,
                                                        Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const FocusTask* task = firstWithStatus(snapshot.state().tasks, TaskStatus::active);
  // Without the reminders, a pending notification would outlive its task.
  if (task != nullptr && task->reminder && task->reminder->isEnabled &&
      options_.reminders == nullptr) {
    return failure("reminder_requires_app", kReminderRefusal, snapshot.revision());
  }
  const std::optional<Uuid> taskID = task != nullptr ? std::optional(task->id) : std::nullopt;
  const TaskStoreSnapshot committed = options_.focusCoordinator != nullptr
                                          ? options_.focusCoordinator->complete(now, revision)
                                          : sessions_.complete(now, revision);
  if (taskID && options_.reminders != nullptr) options_.reminders->cancel(*taskID);
  return success(committed.revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::getReview(Instant now) {
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const WeeklyReview review = RecommendationEngine::review(now, snapshot.state().tasks, calendar_);
  return success(snapshot.revision(), jsonValue(review));
}

AgentResponseEnvelope AgentCommandService::generateProposals(const AgentCommandEnvelope& envelope,
                                                             Instant now) {
  const std::int64_t revision = requireRevision(envelope);
  const TaskStoreSnapshot snapshot = store_.snapshot();
  const PersistedState& state = snapshot.state();
  const WeeklyReview review = RecommendationEngine::review(now, state.tasks, calendar_);
  const std::vector<PlanningProposal> proposals = RecommendationEngine::proposals(
      review, state.tasks, state.preferences.dailyCapacityMinutes, now);
  const TaskStoreSnapshot saved = recommendations_.save(proposals, revision, now);
  return success(saved.revision(), proposalsValue(proposals));
}

AgentResponseEnvelope AgentCommandService::listProposals() {
  const TaskStoreSnapshot snapshot = store_.snapshot();
  return success(snapshot.revision(), proposalsValue(snapshot.state().proposals));
}

AgentResponseEnvelope AgentCommandService::approveProposal(const AgentCommandEnvelope& envelope,
                                                           Instant now) {
  const Uuid proposalID = requireUUID("proposal_id", envelope.payload);
  const std::int64_t revision = requireRevision(envelope);
  return success(recommendations_.approve(proposalID, revision, now).revision(), std::nullopt);
}

AgentResponseEnvelope AgentCommandService::dismissProposal(const AgentCommandEnvelope& envelope,
                                                           Instant now) {
  const Uuid proposalID = requireUUID("proposal_id", envelope.payload);
  const std::int64_t revision = requireRevision(envelope);
  return success(recommendations_.dismiss(proposalID, revision, now).revision(), std::nullopt);
}

}  // namespace brindlet

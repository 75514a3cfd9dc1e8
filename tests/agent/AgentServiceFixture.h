#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Builders.h"
#include "TempDir.h"
#include "agent/AgentCommandService.h"
#include "agent/JSONValue.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "review/RecommendationEngine.h"
#include "support/Calendar.h"

namespace brindlet::testing {

/// A payload written as JSON text, such as R"({"title":"Report"})".
inline JSONObject payloadOf(std::string_view json) {
  const auto value = parseJSONValue(json);
  if (!value || value->object() == nullptr) {
    ADD_FAILURE() << "not a JSON object: " << json;
    return {};
  }
  return *value->object();
}

inline AgentCommandEnvelope command(std::string name,
                                    std::optional<std::int64_t> expectedRevision = std::nullopt,
                                    std::string_view payload = "{}", bool userApproval = false) {
  return {.version = 1,
          .command = std::move(name),
          .expectedRevision = expectedRevision,
          .userApproval = userApproval,
          .payload = payloadOf(payload)};
}

inline AgentResponseEnvelope refusal(std::string code, std::string message,
                                     std::optional<std::int64_t> revision = std::nullopt) {
  return {.version = 1,
          .ok = false,
          .revision = revision,
          .error = AgentCommandError{std::move(code), std::move(message)}};
}

inline AgentResponseEnvelope accepted(std::int64_t revision,
                                      std::optional<JSONValue> result = std::nullopt) {
  return {.version = 1, .ok = true, .revision = revision, .result = std::move(result)};
}

/// A state file in a temporary folder with the store and engines over it, and a service of the
/// chosen authority without coordinator, blocking or reminders.
class AgentServiceTest : public ::testing::Test {
 protected:
  /// Writes the document as the file's content, before the store reads it.
  void seed(const PersistedState& state) { local_.save(state); }

  [[nodiscard]] AgentResponseEnvelope execute(const AgentCommandEnvelope& envelope,
                                              Instant now = kTestNow) {
    return service_.execute(envelope, now);
  }

  [[nodiscard]] PersistedState stored() const { return local_.load(); }
  [[nodiscard]] std::int64_t revision() const { return stored().revision; }

  [[nodiscard]] FocusTask storedTask(const Uuid& id) const {
    for (const FocusTask& task : stored().tasks) {
      if (task.id == id) return task;
    }
    ADD_FAILURE() << "no task " << id.uppercaseText();
    return {};
  }

  [[nodiscard]] std::vector<std::string> auditActions() const {
    std::vector<std::string> actions;
    for (const TaskAuditEvent& event : stored().auditEvents) actions.push_back(event.action);
    return actions;
  }

  TempDir folder_;
  LocalStore local_{folder_ / "Brindlet" / "state.json"};
  TaskStore store_{local_};
  TaskSessionEngine sessions_{store_, Calendar::gregorianUtc()};
  RecommendationEngine recommendations_{store_};
  AgentCommandService service_{store_, sessions_, recommendations_, Calendar::gregorianUtc()};
  AgentCommandService trustedService_{
      store_,
      sessions_,
      recommendations_,
      Calendar::gregorianUtc(),
      {.approvalAuthority = ApprovalAuthority::trustedUserInterface}};
};

}  // namespace brindlet::testing

#pragma once

#include <optional>
#include <string>

#include "records/EnumText.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// Who caused a change of the plan.
enum class MutationSource { user, app, agent };

inline constexpr EnumText<MutationSource, 3> kMutationSourceText{{{
    {MutationSource::user, "user"},
    {MutationSource::app, "app"},
    {MutationSource::agent, "agent"},
}}};

/// One committed change of the plan, as the audit trail records it.
struct TaskAuditEvent {
  Uuid id = Uuid::random();
  Instant timestamp{};
  MutationSource source = MutationSource::user;
  std::string action{};  // dotted, such as "task.create"
  std::optional<Uuid> taskID{};

  friend bool operator==(const TaskAuditEvent&, const TaskAuditEvent&) = default;
};

void toJson(JsonWriter& out, const TaskAuditEvent& event);
[[nodiscard]] TaskAuditEvent taskAuditEventFromJson(const JsonNode& node);

}  // namespace brindlet

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "agent/JSONValue.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// One command as a client sends it. `expectedRevision` names the revision a change was worked
/// out from; `userApproval` says that a person stands behind the command.
struct AgentCommandEnvelope {
  std::int64_t version = 1;
  std::string command{};
  std::optional<std::int64_t> expectedRevision{};
  bool userApproval = false;
  /// The command's arguments, with snake-case keys.
  JSONObject payload{};

  friend bool operator==(const AgentCommandEnvelope&, const AgentCommandEnvelope&) = default;
};

/// Writes `version`, `command`, `expectedRevision` when present, `userApproval` and `payload`.
void toJson(JsonWriter& out, const AgentCommandEnvelope& envelope);

/// The envelope of JSON text. Absent when the text isn't a JSON object, when `version` or
/// `command` is missing, or when a key has the wrong kind (a `version` of 1.5 included). Null
/// reads as a missing key; unknown keys are ignored.
[[nodiscard]] std::optional<AgentCommandEnvelope> decodeAgentCommandEnvelope(std::string_view text);

}  // namespace brindlet

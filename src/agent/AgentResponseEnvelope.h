#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "agent/AgentCommandError.h"
#include "agent/JSONValue.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// The answer to one command: `ok` with the revision and the result, or not `ok` with the
/// error, and the revision when the client needs it to try again.
struct AgentResponseEnvelope {
  std::int64_t version = 1;
  bool ok = false;
  std::optional<std::int64_t> revision{};
  std::optional<JSONValue> result{};
  std::optional<AgentCommandError> error{};

  friend bool operator==(const AgentResponseEnvelope&, const AgentResponseEnvelope&) = default;
};

/// Writes `version`, `ok`, then `revision`, `result` and `error`, each only when present.
void toJson(JsonWriter& out, const AgentResponseEnvelope& response);

/// The response of JSON text; absent when it can't be read as one. A null `result` is absent.
[[nodiscard]] std::optional<AgentResponseEnvelope> decodeAgentResponseEnvelope(
    std::string_view text);

}  // namespace brindlet

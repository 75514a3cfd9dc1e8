#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "support/JsonWriter.h"

namespace brindlet {

/// Why a command was refused: a snake-case code for the client to act on, and a sentence.
struct AgentCommandError {
  std::string code;
  std::string message;

  friend bool operator==(const AgentCommandError&, const AgentCommandError&) = default;
};

/// Writes `code`, then `message`.
void toJson(JsonWriter& out, const AgentCommandError& error);

/// The error of JSON text; absent when either key is missing or isn't text.
[[nodiscard]] std::optional<AgentCommandError> decodeAgentCommandError(std::string_view text);

}  // namespace brindlet

#include "agent/AgentCommandError.h"

#include "agent/EnvelopeFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const AgentCommandError& error) {
  out.beginObject();
  out.key("code").string(error.code);
  out.key("message").string(error.message);
  out.endObject();
}

std::optional<AgentCommandError> decodeAgentCommandError(std::string_view text) {
  simdjson::dom::parser parser;
  const auto object = envelope::parseObject(parser, text);
  if (!object) return std::nullopt;
  const auto code = envelope::fieldAs(*object, "code", envelope::readString);
  const auto message = envelope::fieldAs(*object, "message", envelope::readString);
  if (!code || !message) return std::nullopt;
  return AgentCommandError{*code, *message};
}

}  // namespace brindlet

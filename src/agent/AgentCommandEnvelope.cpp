#include "agent/AgentCommandEnvelope.h"

#include "agent/EnvelopeFields.h"

namespace brindlet {

using envelope::field;
using envelope::fieldAs;
using envelope::parseObject;
using envelope::readBool;
using envelope::readInteger;
using envelope::readString;

void toJson(JsonWriter& out, const AgentCommandEnvelope& envelope) {
  out.beginObject();
  out.key("version").integer(envelope.version);
  out.key("command").string(envelope.command);
  if (envelope.expectedRevision) out.key("expectedRevision").integer(*envelope.expectedRevision);
  out.key("userApproval").boolean(envelope.userApproval);
  toJson(out.key("payload"), envelope.payload);
  out.endObject();
}

std::optional<AgentCommandEnvelope> decodeAgentCommandEnvelope(std::string_view text) {
  simdjson::dom::parser parser;
  const auto object = parseObject(parser, text);
  if (!object) return std::nullopt;

  AgentCommandEnvelope result;
  const auto version = fieldAs(*object, "version", readInteger);
  const auto command = fieldAs(*object, "command", readString);
  if (!version || !command) return std::nullopt;
  result.version = *version;
  result.command = *command;
  if (const auto revision = field(*object, "expectedRevision")) {
    result.expectedRevision = readInteger(*revision);
    if (!result.expectedRevision) return std::nullopt;
  }
  if (const auto approval = field(*object, "userApproval")) {
    const auto flag = readBool(*approval);
    if (!flag) return std::nullopt;
    result.userApproval = *flag;
  }
  if (const auto payload = field(*object, "payload")) {
    if (!payload->is_object()) return std::nullopt;
    result.payload = *jsonValueFromElement(*payload).object();
  }
  return result;
}

}  // namespace brindlet

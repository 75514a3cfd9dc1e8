#include "agent/AgentResponseEnvelope.h"

#include "agent/EnvelopeFields.h"

namespace brindlet {

using envelope::field;
using envelope::fieldAs;
using envelope::parseObject;
using envelope::readBool;
using envelope::readInteger;
using envelope::readObject;
using envelope::readString;

void toJson(JsonWriter& out, const AgentResponseEnvelope& response) {
  out.beginObject();
  out.key("version").integer(response.version);
  out.key("ok").boolean(response.ok);
  if (response.revision) out.key("revision").integer(*response.revision);
  if (response.result) toJson(out.key("result"), *response.result);
  if (response.error) toJson(out.key("error"), *response.error);
  out.endObject();
}

std::optional<AgentResponseEnvelope> decodeAgentResponseEnvelope(std::string_view text) {
  simdjson::dom::parser parser;
  const auto object = parseObject(parser, text);
  if (!object) return std::nullopt;

  AgentResponseEnvelope response;
  const auto version = fieldAs(*object, "version", readInteger);
  const auto ok = fieldAs(*object, "ok", readBool);
  if (!version || !ok) return std::nullopt;
  response.version = *version;
  response.ok = *ok;
  if (const auto revision = field(*object, "revision")) {
    response.revision = readInteger(*revision);
    if (!response.revision) return std::nullopt;
  }
  if (const auto result = field(*object, "result")) response.result = jsonValueFromElement(*result);
  if (const auto error = field(*object, "error")) {
    const auto fields = readObject(*error);
    if (!fields) return std::nullopt;
    const auto code = fieldAs(*fields, "code", readString);
    const auto message = fieldAs(*fields, "message", readString);
    if (!code || !message) return std::nullopt;
    response.error = AgentCommandError{*code, *message};
  }
  return response;
}

}  // namespace brindlet

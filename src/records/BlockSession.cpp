#include "records/BlockSession.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const BlockSession& session) {
  out.beginObject();
  json::writeInstant(out.key("endsAt"), session.endsAt);
  out.key("group");
  toJson(out, session.group);
  out.key("id").string(session.id.uppercaseText());
  out.key("mode").string(kSessionModeText.text(session.mode));
  json::writeInstant(out.key("startedAt"), session.startedAt);
  out.key("state").string(kSessionStateText.text(session.state));
  out.endObject();
}

BlockSession blockSessionFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.id = object.required("id").uuid(),
          .group = domainGroupFromJson(object.required("group")),
          .mode = kSessionModeText.decode(object.required("mode")),
          .startedAt = object.required("startedAt").instant(),
          .endsAt = object.required("endsAt").instant(),
          .state = kSessionStateText.decode(object.required("state"))};
}

}  // namespace brindlet

#include "sync/SyncedSessionIntent.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const SyncedSessionIntent& intent) {
  out.beginObject();
  out.key("schemaVersion").integer(intent.schemaVersion);
  out.key("sessionID").string(intent.sessionID.uppercaseText());
  out.key("profileID").string(intent.profileID.uppercaseText());
  out.key("mode").string(kSyncedSessionModeText.text(intent.mode));
  json::writeInstant(out.key("startedAt"), intent.startedAt);
  json::writeInstant(out.key("endsAt"), intent.endsAt);
  out.key("revision").integer(intent.revision);
  out.key("state").string(kSyncedSessionStateText.text(intent.state));
  out.key("sourceDeviceID").string(intent.sourceDeviceID);
  out.endObject();
}

SyncedSessionIntent syncedSessionIntentFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.schemaVersion = object.required("schemaVersion").integer(),
          .sessionID = object.required("sessionID").uuid(),
          .profileID = object.required("profileID").uuid(),
          .mode = kSyncedSessionModeText.decode(object.required("mode")),
          .startedAt = object.required("startedAt").instant(),
          .endsAt = object.required("endsAt").instant(),
          .revision = object.required("revision").integer(),
          .state = kSyncedSessionStateText.decode(object.required("state")),
          .sourceDeviceID = std::string(object.required("sourceDeviceID").string())};
}

}  // namespace brindlet

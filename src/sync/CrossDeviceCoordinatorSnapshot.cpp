#include "sync/CrossDeviceCoordinatorSnapshot.h"

#include "records/JsonFields.h"
#include "support/Base64.h"

namespace brindlet {

void toJson(JsonWriter& out, const CrossDeviceCoordinatorSnapshot& snapshot) {
  out.beginObject();
  out.key("devices").beginArray();
  for (const PairedDevice& device : snapshot.devices) toJson(out, device);
  out.endArray();
  out.key("intents").beginArray();
  for (const SyncedSessionIntent& intent : snapshot.intents) toJson(out, intent);
  out.endArray();
  out.key("acknowledgements").beginArray();
  for (const EnforcementAcknowledgement& acknowledgement : snapshot.acknowledgements) {
    toJson(out, acknowledgement);
  }
  out.endArray();
  json::optionalKey(
      out, "cursor", snapshot.cursor,
      [](JsonWriter& value, const std::string& bytes) { value.string(base64Encoded(bytes)); });
  out.endObject();
}

CrossDeviceCoordinatorSnapshot crossDeviceCoordinatorSnapshotFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.devices = object.required("devices").list(pairedDeviceFromJson),
          .intents = object.required("intents").list(syncedSessionIntentFromJson),
          .acknowledgements =
              object.required("acknowledgements").list(enforcementAcknowledgementFromJson),
          .cursor = json::optionalValue<std::string>(object, "cursor", [](const JsonNode& value) {
            auto bytes = base64Decoded(value.string());
            if (!bytes) value.fail(DecodingError::Case::invalidValue, "It is not base64 text.");
            return std::move(*bytes);
          })};
}

}  // namespace brindlet

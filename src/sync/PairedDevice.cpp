#include "sync/PairedDevice.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const PairedDevice& device) {
  out.beginObject();
  out.key("schemaVersion").integer(device.schemaVersion);
  out.key("id").string(device.id);
  out.key("name").string(device.name);
  out.key("platform").string(kFocusDevicePlatformText.text(device.platform));
  json::writeInstant(out.key("lastSeenAt"), device.lastSeenAt);
  out.endObject();
}

PairedDevice pairedDeviceFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.schemaVersion = object.required("schemaVersion").integer(),
          .id = std::string(object.required("id").string()),
          .name = std::string(object.required("name").string()),
          .platform = kFocusDevicePlatformText.decode(object.required("platform")),
          .lastSeenAt = object.required("lastSeenAt").instant()};
}

}  // namespace brindlet

#include "sync/EnforcementAcknowledgement.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const EnforcementAcknowledgement& acknowledgement) {
  out.beginObject();
  out.key("schemaVersion").integer(acknowledgement.schemaVersion);
  out.key("sessionID").string(acknowledgement.sessionID.uppercaseText());
  out.key("deviceID").string(acknowledgement.deviceID);
  out.key("appliedRevision").integer(acknowledgement.appliedRevision);
  json::writeInstant(out.key("appliedAt"), acknowledgement.appliedAt);
  out.key("result").string(kEnforcementResultText.text(acknowledgement.result));
  json::optionalKey(out, "errorCode", acknowledgement.errorCode,
                    [](JsonWriter& value, const std::string& code) { value.string(code); });
  out.endObject();
}

EnforcementAcknowledgement enforcementAcknowledgementFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {
      .schemaVersion = object.required("schemaVersion").integer(),
      .sessionID = object.required("sessionID").uuid(),
      .deviceID = std::string(object.required("deviceID").string()),
      .appliedRevision = object.required("appliedRevision").integer(),
      .appliedAt = object.required("appliedAt").instant(),
      .result = kEnforcementResultText.decode(object.required("result")),
      .errorCode = json::optionalValue<std::string>(
          object, "errorCode", [](const JsonNode& value) { return std::string(value.string()); })};
}

}  // namespace brindlet

#include "sync/CloudRecordEnvelope.h"

#include "records/JsonFields.h"
#include "support/Base64.h"

namespace brindlet {

void toJson(JsonWriter& out, const CloudRecordEnvelope& envelope) {
  out.beginObject();
  out.key("recordType").string(envelope.recordType);
  out.key("recordID").string(envelope.recordID);
  out.key("payload").string(base64Encoded(envelope.payload));
  json::writeInstant(out.key("updatedAt"), envelope.updatedAt);
  out.key("isDeleted").boolean(envelope.isDeleted);
  out.endObject();
}

CloudRecordEnvelope cloudRecordEnvelopeFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  const JsonNode payload = object.required("payload");
  auto bytes = base64Decoded(payload.string());
  if (!bytes) payload.fail(DecodingError::Case::invalidValue, "It is not base64 text.");
  return {.recordType = std::string(object.required("recordType").string()),
          .recordID = std::string(object.required("recordID").string()),
          .payload = std::move(*bytes),
          .updatedAt = object.required("updatedAt").instant(),
          .isDeleted = object.required("isDeleted").boolean()};
}

}  // namespace brindlet

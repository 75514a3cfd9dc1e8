#include "blocking/DiagnosticsSnapshot.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const DiagnosticsSnapshot& snapshot) {
  out.beginObject();
  out.key("backupDirectory").string(snapshot.backupDirectory);
  out.key("blockingStatus").string(kBlockingStatusText.text(snapshot.blockingStatus));
  out.key("expectedDomainCount").integer(snapshot.expectedDomainCount);
  out.key("health").string(kDiagnosticHealthText.text(snapshot.health));
  json::optionalKey(out, "suggestedAction", snapshot.suggestedAction,
                    [](JsonWriter& writer, DiagnosticAction action) {
                      writer.string(kDiagnosticActionText.text(action));
                    });
  out.endObject();
}

DiagnosticsSnapshot diagnosticsSnapshotFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.health = kDiagnosticHealthText.decode(object.required("health")),
          .blockingStatus = kBlockingStatusText.decode(object.required("blockingStatus")),
          .expectedDomainCount = object.required("expectedDomainCount").integer(),
          .backupDirectory = std::string(object.required("backupDirectory").string()),
          .suggestedAction = json::optionalValue<DiagnosticAction>(
              object, "suggestedAction",
              [](const JsonNode& value) { return kDiagnosticActionText.decode(value); })};
}

}  // namespace brindlet

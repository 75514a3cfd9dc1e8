#include "records/TaskAuditEvent.h"

#include "records/JsonFields.h"

namespace brindlet {

void toJson(JsonWriter& out, const TaskAuditEvent& event) {
  out.beginObject();
  out.key("action").string(event.action);
  out.key("id").string(event.id.uppercaseText());
  out.key("source").string(kMutationSourceText.text(event.source));
  json::optionalKey(out, "taskID", event.taskID, json::writeUuid);
  json::writeInstant(out.key("timestamp"), event.timestamp);
  out.endObject();
}

TaskAuditEvent taskAuditEventFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  // Read in the file's key order, which keeps each lookup short.
  std::string action(object.required("action").string());
  const Uuid id = object.required("id").uuid();
  const MutationSource source = kMutationSourceText.decode(object.required("source"));
  const auto taskID = json::optionalValue<Uuid>(object, "taskID", json::readUuid);
  const Instant timestamp = object.required("timestamp").instant();
  return {.id = id,
          .timestamp = timestamp,
          .source = source,
          .action = std::move(action),
          .taskID = taskID};
}

}  // namespace brindlet

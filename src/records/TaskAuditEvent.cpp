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
  return {.id = object.required("id").uuid(),
          .timestamp = object.required("timestamp").instant(),
          .source = kMutationSourceText.decode(object.required("source")),
          .action = std::string(object.required("action").string()),
          .taskID = json::optionalValue<Uuid>(object, "taskID", json::readUuid)};
}

}  // namespace brindlet

#include "reminders/ReminderRequest.h"

namespace brindlet {

void toJson(JsonWriter& out, const ReminderRequest& request) {
  out.beginObject();
  out.key("body").string(request.body);
  out.key("fireDate").number(request.fireDate.secondsSinceReferenceDate());
  out.key("id").string(request.id);
  out.key("kind").string(kReminderKindText.text(request.kind));
  out.key("taskID").string(request.taskID.uppercaseText());
  out.key("title").string(request.title);
  out.endObject();
}

ReminderRequest reminderRequestFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  std::string body(object.required("body").string());
  const Instant fireDate = object.required("fireDate").instant();
  std::string id(object.required("id").string());
  const ReminderKind kind = kReminderKindText.decode(object.required("kind"));
  const Uuid taskID = object.required("taskID").uuid();
  std::string title(object.required("title").string());
  return {.id = std::move(id),
          .taskID = taskID,
          .kind = kind,
          .fireDate = fireDate,
          .title = std::move(title),
          .body = std::move(body)};
}

}  // namespace brindlet

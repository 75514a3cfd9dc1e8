#include "records/FocusTask.h"

#include "records/JsonFields.h"
#include "support/Text.h"

namespace brindlet {
using json::optionalKey;
using json::optionalValue;
using json::readInstant;
using json::readUuid;
using json::writeInstant;
using json::writeUuid;

std::string ProductivityValidationError::description() const {
  switch (case_) {
    case Case::blankTitle:
      return "Enter a task title.";
    case Case::invalidEstimate:
      return "Estimated time cannot be negative.";
  }
  return {};
}

FocusTask::FocusTask(std::string_view title, Instant createdAt, Fields fields)
    : id(fields.id.value_or(Uuid::random())),
      title(trimmedWhitespace(title)),
      notes(std::move(fields.notes)),
      plannedDay(fields.plannedDay),
      scheduledStart(fields.scheduledStart),
      estimatedMinutes(fields.estimatedMinutes),
      priority(fields.priority),
      manualPosition(fields.manualPosition),
      status(fields.status),
      reminder(fields.reminder),
      blockingGroupID(fields.blockingGroupID),
      createdAt(createdAt),
      updatedAt(fields.updatedAt.value_or(createdAt)),
      startedAt(fields.startedAt),
      completedAt(fields.completedAt),
      lastSkippedAt(fields.lastSkippedAt),
      skipCount(fields.skipCount),
      accumulatedFocusSeconds(fields.accumulatedFocusSeconds),
      activeSegmentStartedAt(fields.activeSegmentStartedAt) {
  validate();
}

void FocusTask::validate() const {
  if (isBlank(title))
    throw ProductivityValidationError(ProductivityValidationError::Case::blankTitle);
  if (estimatedMinutes && (*estimatedMinutes < 0 || *estimatedMinutes > kMaxEstimatedMinutes)) {
    throw ProductivityValidationError(ProductivityValidationError::Case::invalidEstimate);
  }
}

void toJson(JsonWriter& out, const TaskReminder& reminder) {
  out.beginObject();
  out.key("isEnabled").boolean(reminder.isEnabled);
  out.key("remindTenMinutesBefore").boolean(reminder.remindTenMinutesBefore);
  out.key("remindWhenOverdue").boolean(reminder.remindWhenOverdue);
  out.endObject();
}

TaskReminder taskReminderFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {object.required("isEnabled").boolean(),
          object.required("remindTenMinutesBefore").boolean(),
          object.required("remindWhenOverdue").boolean()};
}

// Keys are written in sorted order, which is the order the state file keeps.
void toJson(JsonWriter& out, const FocusTask& task) {
  out.beginObject();
  out.key("accumulatedFocusSeconds").number(task.accumulatedFocusSeconds);
  optionalKey(out, "activeSegmentStartedAt", task.activeSegmentStartedAt, writeInstant);
  optionalKey(out, "blockingGroupID", task.blockingGroupID, writeUuid);
  optionalKey(out, "completedAt", task.completedAt, writeInstant);
  writeInstant(out.key("createdAt"), task.createdAt);
  optionalKey(out, "estimatedMinutes", task.estimatedMinutes,
              [](JsonWriter& o, std::int64_t minutes) { o.integer(minutes); });
  out.key("id").string(task.id.uppercaseText());
  optionalKey(out, "lastSkippedAt", task.lastSkippedAt, writeInstant);
  out.key("manualPosition").integer(task.manualPosition);
  out.key("notes").string(task.notes);
  optionalKey(out, "plannedDay", task.plannedDay,
              [](JsonWriter& o, const LocalDay& day) { toJson(o, day); });
  out.key("priority").string(kTaskPriorityText.text(task.priority));
  optionalKey(out, "reminder", task.reminder,
              [](JsonWriter& o, const TaskReminder& r) { toJson(o, r); });
  optionalKey(out, "scheduledStart", task.scheduledStart, writeInstant);
  out.key("skipCount").integer(task.skipCount);
  optionalKey(out, "startedAt", task.startedAt, writeInstant);
  out.key("status").string(kTaskStatusText.text(task.status));
  out.key("title").string(task.title);
  writeInstant(out.key("updatedAt"), task.updatedAt);
  out.endObject();
}

// Keys are read in the order the file keeps them, which makes each lookup immediate.
FocusTask focusTaskFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  FocusTask task;
  task.accumulatedFocusSeconds = object.required("accumulatedFocusSeconds").number();
  task.activeSegmentStartedAt =
      optionalValue<Instant>(object, "activeSegmentStartedAt", readInstant);
  task.blockingGroupID = optionalValue<Uuid>(object, "blockingGroupID", readUuid);
  task.completedAt = optionalValue<Instant>(object, "completedAt", readInstant);
  task.createdAt = object.required("createdAt").instant();
  task.estimatedMinutes = optionalValue<std::int64_t>(
      object, "estimatedMinutes", [](const JsonNode& n) { return n.integer(); });
  task.id = object.required("id").uuid();
  task.lastSkippedAt = optionalValue<Instant>(object, "lastSkippedAt", readInstant);
  task.manualPosition = object.required("manualPosition").integer();
  task.notes = object.required("notes").string();
  task.plannedDay = optionalValue<LocalDay>(object, "plannedDay", localDayFromJson);
  task.priority = kTaskPriorityText.decode(object.required("priority"));
  task.reminder = optionalValue<TaskReminder>(object, "reminder", taskReminderFromJson);
  task.scheduledStart = optionalValue<Instant>(object, "scheduledStart", readInstant);
  task.skipCount = object.required("skipCount").integer();
  task.startedAt = optionalValue<Instant>(object, "startedAt", readInstant);
  task.status = kTaskStatusText.decode(object.required("status"));
  task.title = object.required("title").string();
  task.updatedAt = object.required("updatedAt").instant();
  return task;
}

}  // namespace brindlet

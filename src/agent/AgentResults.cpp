#include "agent/AgentResults.h"

#include <cmath>
#include <string>

#include "support/JsonWriter.h"

namespace brindlet {
namespace {

JSONValue number(double value) {
  if (!std::isfinite(value)) throw EncodingError("A number that isn't finite has no JSON form.");
  return JSONValue::ofNumber(value);
}

JSONValue integer(std::int64_t value) { return JSONValue::ofNumber(static_cast<double>(value)); }

// Ten thousand years either side of 2001 is far beyond any date a plan holds, and within what
// the text form can write.
constexpr double kDateLimit = 3.2e11;

JSONValue date(Instant instant) {
  const double seconds = instant.secondsSinceReferenceDate();
  if (!std::isfinite(seconds) || std::fabs(seconds) > kDateLimit) {
    throw EncodingError("A date that far from today has no ISO 8601 form.");
  }
  return JSONValue::ofString(instant.iso8601());
}

JSONValue text(std::string_view value) { return JSONValue::ofString(std::string(value)); }

JSONValue uuid(const Uuid& id) { return JSONValue::ofString(id.uppercaseText()); }

JSONValue uuids(const std::vector<Uuid>& ids) {
  JSONValue::Array items;
  items.reserve(ids.size());
  for (const Uuid& id : ids) items.push_back(uuid(id));
  return JSONValue::ofArray(std::move(items));
}

template <typename T, typename Convert>
void setOptional(JSONObject& object, std::string key, const std::optional<T>& value,
                 Convert convert) {
  if (value) object.set(std::move(key), convert(*value));
}

}  // namespace

JSONValue jsonValue(const LocalDay& day) {
  return JSONValue::ofObject(
      {{"year", integer(day.year)}, {"month", integer(day.month)}, {"day", integer(day.day)}});
}

JSONValue jsonValue(const TaskReminder& reminder) {
  return JSONValue::ofObject(
      {{"isEnabled", JSONValue::ofBool(reminder.isEnabled)},
       {"remindTenMinutesBefore", JSONValue::ofBool(reminder.remindTenMinutesBefore)},
       {"remindWhenOverdue", JSONValue::ofBool(reminder.remindWhenOverdue)}});
}

JSONValue jsonValue(const FocusTask& task) {
  const auto day = [](const LocalDay& value) { return jsonValue(value); };
  const auto reminder = [](const TaskReminder& value) { return jsonValue(value); };
  JSONObject object;
  object.set("id", uuid(task.id));
  object.set("title", text(task.title));
  object.set("notes", text(task.notes));
  setOptional(object, "plannedDay", task.plannedDay, day);
  setOptional(object, "scheduledStart", task.scheduledStart, date);
  setOptional(object, "estimatedMinutes", task.estimatedMinutes, integer);
  object.set("priority", text(kTaskPriorityText.text(task.priority)));
  object.set("manualPosition", integer(task.manualPosition));
  object.set("status", text(kTaskStatusText.text(task.status)));
  setOptional(object, "reminder", task.reminder, reminder);
  setOptional(object, "blockingGroupID", task.blockingGroupID, uuid);
  object.set("createdAt", date(task.createdAt));
  object.set("updatedAt", date(task.updatedAt));
  setOptional(object, "startedAt", task.startedAt, date);
  setOptional(object, "completedAt", task.completedAt, date);
  setOptional(object, "lastSkippedAt", task.lastSkippedAt, date);
  object.set("skipCount", integer(task.skipCount));
  object.set("accumulatedFocusSeconds", number(task.accumulatedFocusSeconds));
  setOptional(object, "activeSegmentStartedAt", task.activeSegmentStartedAt, date);
  return JSONValue::ofObject(std::move(object));
}

JSONValue jsonValue(const PlanningProposal& proposal) {
  const auto day = [](const LocalDay& value) { return jsonValue(value); };
  JSONObject object;
  object.set("id", uuid(proposal.id));
  object.set("kind", text(kProposalKindText.text(proposal.kind)));
  object.set("taskID", uuid(proposal.taskID));
  object.set("reason", text(proposal.reason));
  setOptional(object, "originalPlannedDay", proposal.originalPlannedDay, day);
  setOptional(object, "suggestedPlannedDay", proposal.suggestedPlannedDay, day);
  object.set("status", text(kProposalStatusText.text(proposal.status)));
  object.set("createdAt", date(proposal.createdAt));
  return JSONValue::ofObject(std::move(object));
}

JSONValue jsonValue(const WeeklyReview& review) {
  JSONValue::Array byPriority;
  for (const auto& [priority, count] : review.completedByPriority) {
    byPriority.push_back(text(kTaskPriorityText.text(priority)));
    byPriority.push_back(integer(count));
  }
  JSONValue::Array workload;
  for (const auto& [day, minutes] : review.dailyWorkload) {
    workload.push_back(jsonValue(day));
    workload.push_back(integer(minutes));
  }
  JSONObject object;
  object.set("weekStart", jsonValue(review.weekStart));
  object.set("weekEnd", jsonValue(review.weekEnd));
  object.set("plannedTaskCount", integer(review.plannedTaskCount));
  object.set("completedTaskCount", integer(review.completedTaskCount));
  object.set("completionRate", number(review.completionRate));
  object.set("plannedMinutes", integer(review.plannedMinutes));
  object.set("actualMinutes", integer(review.actualMinutes));
  object.set("completedByPriority", JSONValue::ofArray(std::move(byPriority)));
  object.set("carryoverTaskIDs", uuids(review.carryoverTaskIDs));
  object.set("skippedTaskIDs", uuids(review.skippedTaskIDs));
  object.set("dailyWorkload", JSONValue::ofArray(std::move(workload)));
  object.set("completedTaskIDs", uuids(review.completedTaskIDs));
  return JSONValue::ofObject(std::move(object));
}

}  // namespace brindlet

#include "Builders.h"

namespace brindlet::testing {

TaskBuilder::TaskBuilder() : task_("Task", kTestNow) {}

TaskBuilder& TaskBuilder::titled(std::string title) {
  task_.title = std::move(title);
  return *this;
}

TaskBuilder& TaskBuilder::plannedOn(LocalDay day) {
  task_.plannedDay = day;
  return *this;
}

TaskBuilder& TaskBuilder::withPriority(TaskPriority priority) {
  task_.priority = priority;
  return *this;
}

TaskBuilder& TaskBuilder::withStatus(TaskStatus status) {
  task_.status = status;
  return *this;
}

TaskBuilder& TaskBuilder::estimated(std::int64_t minutes) {
  task_.estimatedMinutes = minutes;
  return *this;
}

TaskBuilder& TaskBuilder::createdAt(Instant instant) {
  task_.createdAt = instant;
  task_.updatedAt = instant;
  return *this;
}

TaskBuilder& TaskBuilder::withEveryField() {
  task_.notes = "Line one\nwith \"quotes\", a \\ and a tab\t.";
  task_.plannedDay = LocalDay{2026, 11, 21};
  task_.scheduledStart = kTestNow.advanced(3600.25);
  task_.estimatedMinutes = 45;
  task_.priority = TaskPriority::high;
  task_.manualPosition = 3;
  task_.status = TaskStatus::active;
  task_.reminder = TaskReminder{true, true, false};
  task_.blockingGroupID = DomainGroup::socialDistractions().id;
  task_.updatedAt = kTestNow.advanced(60);
  task_.startedAt = kTestNow.advanced(120.5);
  task_.completedAt = kTestNow.advanced(7200);
  task_.lastSkippedAt = kTestNow.advanced(90);
  task_.skipCount = 2;
  task_.accumulatedFocusSeconds = 1234.5678;
  task_.activeSegmentStartedAt = kTestNow.advanced(600.125);
  return *this;
}

PersistedState makeFullState() {
  PersistedState state = PersistedState::initial();
  const FocusTask task = makeTask().titled("Write the report").withEveryField();
  state.tasks = {task, makeTask().titled("Minimal")};
  state.revision = 7;
  state.activeSession = BlockSession{.id = Uuid::random(),
                                     .group = DomainGroup::socialDistractions(),
                                     .mode = SessionMode::strict,
                                     .startedAt = kTestNow,
                                     .endsAt = kTestNow.advanced(1500),
                                     .state = SessionState::attentionRequired};
  state.proposals = {PlanningProposal{.id = Uuid::random(),
                                      .kind = ProposalKind::reschedule,
                                      .taskID = task.id,
                                      .reason = "Tuesday is overloaded.",
                                      .originalPlannedDay = LocalDay{2026, 11, 21},
                                      .suggestedPlannedDay = LocalDay{2026, 11, 22},
                                      .status = ProposalStatus::pending,
                                      .createdAt = kTestNow}};
  state.auditEvents = {TaskAuditEvent{.id = Uuid::random(),
                                      .timestamp = kTestNow,
                                      .source = MutationSource::agent,
                                      .action = "task.create",
                                      .taskID = task.id}};
  state.preferences.dailyCapacityMinutes = 360;
  return state;
}

}  // namespace brindlet::testing

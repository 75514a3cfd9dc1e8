#pragma once

#include <cstdint>
#include <string>

#include "persistence/PersistedState.h"
#include "records/FocusTask.h"
#include "support/Instant.h"

namespace brindlet::testing {

/// A fixed instant for tests: 2026-11-21T09:30:00Z.
inline constexpr Instant kTestNow = Instant::fromUnix(1795253400.0);

/// Builds a task step by step: makeTask().titled("Report").plannedOn({2026, 11, 21}).
class TaskBuilder {
 public:
  TaskBuilder();
  TaskBuilder& titled(std::string title);
  TaskBuilder& plannedOn(LocalDay day);
  TaskBuilder& withPriority(TaskPriority priority);
  TaskBuilder& withStatus(TaskStatus status);
  TaskBuilder& estimated(std::int64_t minutes);
  TaskBuilder& createdAt(Instant instant);
  /// Fills every optional field, so the task exercises every key of its JSON form.
  TaskBuilder& withEveryField();
  [[nodiscard]] FocusTask build() const { return task_; }
  operator FocusTask() const { return task_; }  // NOLINT(google-explicit-constructor)

 private:
  FocusTask task_;
};

[[nodiscard]] inline TaskBuilder makeTask() { return {}; }

/// A document with every optional field present at every level.
[[nodiscard]] PersistedState makeFullState();

}  // namespace brindlet::testing

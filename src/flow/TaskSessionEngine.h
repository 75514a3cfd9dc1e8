#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "persistence/TaskStore.h"
#include "persistence/TaskStoreSnapshot.h"
#include "support/Calendar.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// The life of the task being worked on: start, pause, resume, skip, complete, the undoing of a
/// start, and finding the running task again at launch. Measures focus time, keeps at most one
/// task active, and commits every step through the store. Lives on the model thread.
class TaskSessionEngine {
 public:
  TaskSessionEngine(TaskStore& store, Calendar calendar);

  /// The running task as this engine last saw it; the store stays the truth.
  [[nodiscard]] const std::optional<Uuid>& activeTaskID() const { return activeTaskID_; }
  /// The task suggested after a completion; nothing starts it.
  [[nodiscard]] const std::optional<Uuid>& nextTaskID() const { return nextTaskID_; }
  /// Cleared by start and recover; this engine never sets a message of its own.
  [[nodiscard]] const std::optional<std::string>& lastError() const { return lastError_; }

  /// Makes a pending or paused task the active one and opens a focus segment. Fails with
  /// TaskSessionError or the store's errors.
  TaskStoreSnapshot start(const Uuid& taskID, Instant now, std::int64_t expectedRevision);
  /// Closes the running segment and pauses the active task.
  TaskStoreSnapshot pause(Instant now, std::int64_t expectedRevision);
  /// Starts again the first paused task of the stored list.
  TaskStoreSnapshot resume(Instant now, std::int64_t expectedRevision);
  /// Sends the active task to the back of its day, pending, and counts the skip.
  TaskStoreSnapshot skip(Instant now, std::int64_t expectedRevision);
  /// Finishes the active task and suggests the next one of its day.
  TaskStoreSnapshot complete(Instant now, std::int64_t expectedRevision);
  /// Undoes a start whose follow-up failed: the task goes back to pending and the segment just
  /// begun is dropped.
  TaskStoreSnapshot cancelStart(const Uuid& taskID, Instant now, std::int64_t expectedRevision);
  /// Finds a task whose segment was running when the program stopped; writes nothing.
  TaskStoreSnapshot recover(Instant now);
  [[nodiscard]] TaskStoreSnapshot snapshot();

 private:
  [[nodiscard]] Uuid currentActiveTaskID();

  TaskStore& store_;
  Calendar calendar_;
  std::optional<Uuid> activeTaskID_;
  std::optional<Uuid> nextTaskID_;
  std::optional<std::string> lastError_;
};

}  // namespace brindlet

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "blocking/SessionEngine.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/TaskStoreSnapshot.h"
#include "records/BlockSession.h"
#include "records/DomainGroup.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// Puts a task's steps and its blocking session in order: the task starts first and is undone
/// when its blocking can't start; a task can't be paused or skipped while a strict session
/// holds; stopping a task ends a session that may be ended. The two engines don't know each
/// other, and no task is tied to a session by reference: stopping ends whatever session runs.
/// Lives on the model thread.
class FocusCoordinator {
 public:
  FocusCoordinator(TaskSessionEngine& tasks, SessionEngine& blocking);

  /// The last failure of a joint start, or what launch found amiss; shown by the model.
  [[nodiscard]] const std::optional<std::string>& lastError() const { return lastError_; }
  [[nodiscard]] TaskSessionEngine& tasks() const { return tasks_; }
  [[nodiscard]] SessionEngine& blocking() const { return blocking_; }

  /// Starts the task, then blocks `blockingGroup` for `duration` seconds when one is given. A
  /// blocking failure sends the task back to pending and is raised; a task failure is raised
  /// with nothing changed.
  TaskStoreSnapshot start(const Uuid& taskID, const std::optional<DomainGroup>& blockingGroup,
                          double duration, SessionMode mode, Instant now, std::int64_t revision);
  /// Pauses the active task and ends a session that may be ended. Fails with
  /// SessionError::strictSessionLocked, before touching the task, while a strict session runs.
  TaskStoreSnapshot pause(Instant now, std::int64_t revision);
  /// Completes the active task, even during a strict session, which then runs on.
  TaskStoreSnapshot complete(Instant now, std::int64_t revision);
  /// Skips the active task, under the same guard as pause.
  TaskStoreSnapshot skip(Instant now, std::int64_t revision);
  /// Puts both engines back in order at launch, task side first, and notes when the active task
  /// expects blocking that isn't in force. Never fails, and repairs nothing itself.
  void recover(Instant now);

 private:
  void refuseWhileStrictSessionRuns(Instant now) const;

  TaskSessionEngine& tasks_;
  SessionEngine& blocking_;
  std::optional<std::string> lastError_;
};

}  // namespace brindlet

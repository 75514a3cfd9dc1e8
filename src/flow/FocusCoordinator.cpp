#include "flow/FocusCoordinator.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "blocking/SessionError.h"
#include "support/BrindletError.h"

namespace brindlet {
namespace {

constexpr const char* kProtectionMissing =
    "The active task expects website blocking, but protection is not active.";

}  // namespace

FocusCoordinator::FocusCoordinator(TaskSessionEngine& tasks, SessionEngine& blocking)
    : tasks_(tasks), blocking_(blocking) {}

TaskStoreSnapshot FocusCoordinator::start(const Uuid& taskID,
                                          const std::optional<DomainGroup>& blockingGroup,
                                          double duration, SessionMode mode, Instant now,
                                          std::int64_t revision) {
  // The task goes first: it is cheap, reversible and holds the revision check, so the approval
  // dialog only appears for a task that really could start.
  const TaskStoreSnapshot started = tasks_.start(taskID, now, revision);
  if (!blockingGroup) {
    lastError_.reset();
    return started;
  }
  try {
    blocking_.start(*blockingGroup, duration, mode, now);
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    try {
      tasks_.cancelStart(taskID, now, started.revision());
    } catch (...) {
      // A write in between makes the undo conflict; the task then stays active without
      // blocking, and the next recover reports that.
    }
    lastError_ = errorText(failure);
    std::rethrow_exception(failure);
  }
  lastError_.reset();
  return tasks_.snapshot();
}

void FocusCoordinator::refuseWhileStrictSessionRuns(Instant now) const {
  // A task that stopped while its restriction goes on isn't wanted, and the restriction can't
  // be ended yet, so the task may not stop either.
  const std::optional<BlockSession>& session = blocking_.activeSession();
  if (session && session->mode == SessionMode::strict && now < session->endsAt) {
    throw SessionError(SessionError::Case::strictSessionLocked);
  }
}

TaskStoreSnapshot FocusCoordinator::pause(Instant now, std::int64_t revision) {
  refuseWhileStrictSessionRuns(now);
  tasks_.pause(now, revision);
  // No compensation when the session can't be ended: the task stays paused.
  blocking_.endIfFlexible(now);
  return tasks_.snapshot();
}

TaskStoreSnapshot FocusCoordinator::skip(Instant now, std::int64_t revision) {
  refuseWhileStrictSessionRuns(now);
  tasks_.skip(now, revision);
  blocking_.endIfFlexible(now);
  return tasks_.snapshot();
}

TaskStoreSnapshot FocusCoordinator::complete(Instant now, std::int64_t revision) {
  // Finishing the work is always allowed; a strict session simply runs until its end.
  tasks_.complete(now, revision);
  blocking_.endIfFlexible(now);
  return tasks_.snapshot();
}

void FocusCoordinator::recover(Instant now) {
  try {
    tasks_.recover(now);
    blocking_.recover(now);
    const TaskStoreSnapshot current = tasks_.snapshot();
    const std::vector<FocusTask>& taskList = current.state().tasks;
    const auto active = std::find_if(taskList.begin(), taskList.end(), [](const FocusTask& task) {
      return task.status == TaskStatus::active;
    });
    // Only the presence of a session is checked, not its group: the user decides what to do.
    if (active != taskList.end() && active->blockingGroupID && !blocking_.activeSession()) {
      lastError_ = kProtectionMissing;
    } else {
      lastError_ = blocking_.lastError();
    }
  } catch (...) {
    lastError_ = currentErrorText();
  }
}

}  // namespace brindlet

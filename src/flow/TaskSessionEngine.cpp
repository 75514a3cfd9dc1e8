#include "flow/TaskSessionEngine.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "flow/PlannerEngine.h"
#include "flow/TaskSessionError.h"

namespace brindlet {
namespace {

using Case = TaskSessionError::Case;

FocusTask* findTask(std::vector<FocusTask>& tasks, const Uuid& id) {
  const auto found = std::find_if(tasks.begin(), tasks.end(),
                                  [&](const FocusTask& task) { return task.id == id; });
  return found == tasks.end() ? nullptr : &*found;
}

// The task must still be active inside the transaction: what was seen before it may be stale.
FocusTask& activeTask(std::vector<FocusTask>& tasks, const Uuid& id) {
  FocusTask* task = findTask(tasks, id);
  if (task == nullptr || task->status != TaskStatus::active) {
    throw TaskSessionError(Case::noActiveTask);
  }
  return *task;
}

// Folds the running segment into the task's focus time. A clock that went backwards adds
// nothing rather than taking time away.
void closeSegment(FocusTask& task, Instant now) {
  if (task.activeSegmentStartedAt) {
    task.accumulatedFocusSeconds += std::max(0.0, now.since(*task.activeSegmentStartedAt));
  }
  task.activeSegmentStartedAt.reset();
}

}  // namespace

TaskSessionEngine::TaskSessionEngine(TaskStore& store, Calendar calendar)
    : store_(store), calendar_(std::move(calendar)) {}

TaskStoreSnapshot TaskSessionEngine::snapshot() { return store_.snapshot(); }

Uuid TaskSessionEngine::currentActiveTaskID() {
  const TaskStoreSnapshot current = store_.snapshot();
  const std::vector<FocusTask>& tasks = current.state().tasks;
  const auto found = std::find_if(tasks.begin(), tasks.end(), [](const FocusTask& task) {
    return task.status == TaskStatus::active;
  });
  if (found == tasks.end()) throw TaskSessionError(Case::noActiveTask);
  activeTaskID_ = found->id;
  return found->id;
}

TaskStoreSnapshot TaskSessionEngine::start(const Uuid& taskID, Instant now,
                                           std::int64_t expectedRevision) {
  TaskStoreSnapshot result = store_.transact(
      expectedRevision, MutationSource::app, "task.start", taskID, now, [&](PersistedState& state) {
        // Another running task is reported first, even when the one asked for doesn't exist.
        const bool anotherActive =
            std::any_of(state.tasks.begin(), state.tasks.end(), [&](const FocusTask& task) {
              return task.id != taskID && task.status == TaskStatus::active;
            });
        if (anotherActive) throw TaskSessionError(Case::anotherTaskActive);
        FocusTask* task = findTask(state.tasks, taskID);
        if (task == nullptr) throw TaskSessionError(Case::taskNotFound);
        if (task->status != TaskStatus::pending && task->status != TaskStatus::paused) {
          throw TaskSessionError(Case::invalidState);
        }
        task->status = TaskStatus::active;
        // A task keeps the time of its first start across pauses.
        if (!task->startedAt) task->startedAt = now;
        task->activeSegmentStartedAt = now;
        task->updatedAt = now;
      });
  activeTaskID_ = taskID;
  nextTaskID_.reset();
  lastError_.reset();
  return result;
}

TaskStoreSnapshot TaskSessionEngine::pause(Instant now, std::int64_t expectedRevision) {
  const Uuid taskID = currentActiveTaskID();
  TaskStoreSnapshot result = store_.transact(expectedRevision, MutationSource::app, "task.pause",
                                             taskID, now, [&](PersistedState& state) {
                                               FocusTask& task = activeTask(state.tasks, taskID);
                                               // Without a segment start there is no time to
                                               // measure, so no pause to record.
                                               if (!task.activeSegmentStartedAt)
                                                 throw TaskSessionError(Case::noActiveTask);
                                               closeSegment(task, now);
                                               task.status = TaskStatus::paused;
                                               task.updatedAt = now;
                                             });
  activeTaskID_.reset();
  return result;
}

TaskStoreSnapshot TaskSessionEngine::resume(Instant now, std::int64_t expectedRevision) {
  // The first paused task of the stored list, whatever its place in the queue.
  const TaskStoreSnapshot current = store_.snapshot();
  const std::vector<FocusTask>& tasks = current.state().tasks;
  const auto paused = std::find_if(tasks.begin(), tasks.end(), [](const FocusTask& task) {
    return task.status == TaskStatus::paused;
  });
  if (paused == tasks.end()) throw TaskSessionError(Case::noActiveTask);
  return start(paused->id, now, expectedRevision);
}

TaskStoreSnapshot TaskSessionEngine::skip(Instant now, std::int64_t expectedRevision) {
  const Uuid taskID = currentActiveTaskID();
  TaskStoreSnapshot result = store_.transact(
      expectedRevision, MutationSource::app, "task.skip", taskID, now, [&](PersistedState& state) {
        FocusTask& task = activeTask(state.tasks, taskID);
        closeSegment(task, now);
        task.status = TaskStatus::pending;
        if (task.skipCount == std::numeric_limits<std::int64_t>::max()) std::abort();
        ++task.skipCount;
        task.lastSkippedAt = now;
        task.updatedAt = now;
        // Taken with the task already pending, so it counts itself and lands behind every
        // other open task of its day.
        task.manualPosition =
            PlannerEngine::nextManualPosition(state.tasks, task.plannedDay, task.priority);
      });
  activeTaskID_.reset();
  return result;
}

TaskStoreSnapshot TaskSessionEngine::complete(Instant now, std::int64_t expectedRevision) {
  const Uuid taskID = currentActiveTaskID();
  TaskStoreSnapshot result = store_.transact(expectedRevision, MutationSource::app, "task.complete",
                                             taskID, now, [&](PersistedState& state) {
                                               FocusTask& task = activeTask(state.tasks, taskID);
                                               closeSegment(task, now);
                                               task.status = TaskStatus::completed;
                                               task.completedAt = now;
                                               task.updatedAt = now;
                                             });
  activeTaskID_.reset();

  const std::vector<FocusTask>& tasks = result.state().tasks;
  const auto completed = std::find_if(tasks.begin(), tasks.end(),
                                      [&](const FocusTask& task) { return task.id == taskID; });
  LocalDay day(now, calendar_);
  if (completed != tasks.end() && completed->plannedDay) day = *completed->plannedDay;
  const std::optional<FocusTask> next = PlannerEngine::nextTask(tasks, day, now, calendar_);
  nextTaskID_ = next ? std::optional<Uuid>(next->id) : std::nullopt;
  return result;
}

TaskStoreSnapshot TaskSessionEngine::cancelStart(const Uuid& taskID, Instant now,
                                                 std::int64_t expectedRevision) {
  TaskStoreSnapshot result =
      store_.transact(expectedRevision, MutationSource::app, "task.start.cancel", taskID, now,
                      [&](PersistedState& state) {
                        FocusTask* task = findTask(state.tasks, taskID);
                        if (task == nullptr || task->status != TaskStatus::active) {
                          throw TaskSessionError(Case::taskNotFound);
                        }
                        // The segment just begun is dropped, not counted; earlier focus time stays.
                        // A task that was paused before this start comes back pending.
                        task->status = TaskStatus::pending;
                        task->activeSegmentStartedAt.reset();
                        task->startedAt.reset();
                        task->updatedAt = now;
                      });
  activeTaskID_.reset();
  return result;
}

TaskStoreSnapshot TaskSessionEngine::recover(Instant /*now*/) {
  TaskStoreSnapshot current = store_.snapshot();
  const std::vector<FocusTask>& tasks = current.state().tasks;
  // A segment that was running when the program stopped stays open, so the time away counts
  // as focus time when it is next closed.
  const auto running = std::find_if(tasks.begin(), tasks.end(), [](const FocusTask& task) {
    return task.status == TaskStatus::active && task.activeSegmentStartedAt.has_value();
  });
  activeTaskID_ = running == tasks.end() ? std::nullopt : std::optional<Uuid>(running->id);
  lastError_.reset();
  return current;
}

}  // namespace brindlet

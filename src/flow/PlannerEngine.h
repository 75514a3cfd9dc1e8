#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "flow/WorkloadSummary.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "support/Calendar.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// The computations over a day's tasks: its queue and order, what comes next, how much it
/// holds, and where a new task goes. Pure functions of the tasks passed in; no instances.
class PlannerEngine {
 public:
  PlannerEngine() = delete;

  /// The day's queue: its tasks that aren't archived, the active one first and completed ones
  /// last; between the rest, manual position, then priority, then age decide.
  [[nodiscard]] static std::vector<FocusTask> queueTasks(std::span<const FocusTask> tasks,
                                                         const LocalDay& day);

  /// The whole task list after moving `taskID` into the place of `to` in the day's open queue,
  /// with that queue's positions renumbered from 0. The list comes back unchanged when either
  /// task isn't in the open queue or both are the same.
  [[nodiscard]] static std::vector<FocusTask> reorder(std::span<const FocusTask> tasks,
                                                      const Uuid& taskID, const Uuid& to,
                                                      const LocalDay& day);

  /// The day's open tasks that may start at `now`, in queue order: those without a fixed start
  /// and those whose start has come.
  [[nodiscard]] static std::vector<FocusTask> orderedTasks(std::span<const FocusTask> tasks,
                                                           const LocalDay& day, Instant now,
                                                           const Calendar& calendar);

  /// The task to work on next, if any may start at `now`.
  [[nodiscard]] static std::optional<FocusTask> nextTask(std::span<const FocusTask> tasks,
                                                         const LocalDay& day, Instant now,
                                                         const Calendar& calendar);

  /// The open tasks of the day and their summed estimates.
  [[nodiscard]] static WorkloadSummary workload(std::span<const FocusTask> tasks,
                                                const LocalDay& day);

  /// The position that puts a task behind every open task of `day`; unplanned tasks, with an
  /// absent day, have a sequence of their own. Priority doesn't change where a new task goes.
  [[nodiscard]] static std::int64_t nextManualPosition(std::span<const FocusTask> tasks,
                                                       const std::optional<LocalDay>& day,
                                                       TaskPriority priority);
};

}  // namespace brindlet

#include "flow/PlannerEngine.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <tuple>

namespace brindlet {
namespace {

bool isOn(const FocusTask& task, const LocalDay& day) {
  return task.plannedDay.has_value() && *task.plannedDay == day;
}

bool isOpen(const FocusTask& task) {
  return task.status != TaskStatus::completed && task.status != TaskStatus::archived;
}

// The order of a day's queue. The active task heads it and completed tasks sink to its end;
// otherwise a manual placement beats priority, and age only settles what both leave equal.
// Pending and paused tasks are not told apart.
bool queueOrder(const FocusTask& a, const FocusTask& b) {
  const auto key = [](const FocusTask& task) {
    return std::make_tuple(task.status != TaskStatus::active, task.status == TaskStatus::completed,
                           task.manualPosition, rank(task.priority), task.createdAt);
  };
  return key(a) < key(b);
}

template <typename Keep>
std::vector<FocusTask> sortedQueue(std::span<const FocusTask> tasks, Keep keep) {
  std::vector<FocusTask> queue;
  std::copy_if(tasks.begin(), tasks.end(), std::back_inserter(queue), keep);
  // Stable, so tasks that tie on every rule keep the order of the list.
  std::stable_sort(queue.begin(), queue.end(), queueOrder);
  return queue;
}

std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  // A plan whose minutes overflow 64 bits can only come from a damaged program.
  if (__builtin_add_overflow(a, b, &sum)) std::abort();
  return sum;
}

}  // namespace

std::vector<FocusTask> PlannerEngine::queueTasks(std::span<const FocusTask> tasks,
                                                 const LocalDay& day) {
  return sortedQueue(tasks, [&](const FocusTask& task) {
    return isOn(task, day) && task.status != TaskStatus::archived;
  });
}

std::vector<FocusTask> PlannerEngine::reorder(std::span<const FocusTask> tasks, const Uuid& taskID,
                                              const Uuid& to, const LocalDay& day) {
  std::vector<FocusTask> result(tasks.begin(), tasks.end());
  std::vector<FocusTask> queue =
      sortedQueue(tasks, [&](const FocusTask& task) { return isOn(task, day) && isOpen(task); });
  const auto indexOf = [&](const Uuid& id) -> std::optional<std::ptrdiff_t> {
    const auto found = std::find_if(queue.begin(), queue.end(),
                                    [&](const FocusTask& task) { return task.id == id; });
    if (found == queue.end()) return std::nullopt;
    return found - queue.begin();
  };
  const std::optional<std::ptrdiff_t> source = indexOf(taskID);
  if (!source) return result;
  const std::optional<std::ptrdiff_t> target = indexOf(to);
  if (!target || *target == *source) return result;

  FocusTask moved = std::move(queue[static_cast<std::size_t>(*source)]);
  queue.erase(queue.begin() + *source);
  // The target's index from before the removal: moving down lands just after the former
  // target, moving up just before it.
  const std::ptrdiff_t destination =
      std::clamp<std::ptrdiff_t>(*target, 0, static_cast<std::ptrdiff_t>(queue.size()));
  queue.insert(queue.begin() + destination, std::move(moved));

  std::int64_t position = 0;
  for (const FocusTask& queued : queue) {
    const auto found = std::find_if(result.begin(), result.end(),
                                    [&](const FocusTask& task) { return task.id == queued.id; });
    if (found != result.end()) found->manualPosition = position;
    ++position;
  }
  return result;
}

std::vector<FocusTask> PlannerEngine::orderedTasks(std::span<const FocusTask> tasks,
                                                   const LocalDay& day, Instant now,
                                                   const Calendar& /*calendar*/) {
  return sortedQueue(tasks, [&](const FocusTask& task) {
    return isOn(task, day) && isOpen(task) &&
           (!task.scheduledStart.has_value() || *task.scheduledStart <= now);
  });
}

std::optional<FocusTask> PlannerEngine::nextTask(std::span<const FocusTask> tasks,
                                                 const LocalDay& day, Instant now,
                                                 const Calendar& calendar) {
  std::vector<FocusTask> ordered = orderedTasks(tasks, day, now, calendar);
  if (ordered.empty()) return std::nullopt;
  return std::move(ordered.front());
}

WorkloadSummary PlannerEngine::workload(std::span<const FocusTask> tasks, const LocalDay& day) {
  WorkloadSummary summary;
  for (const FocusTask& task : tasks) {
    if (!isOn(task, day) || !isOpen(task)) continue;
    summary.taskCount = checkedSum(summary.taskCount, 1);
    summary.estimatedMinutes =
        checkedSum(summary.estimatedMinutes, task.estimatedMinutes.value_or(0));
  }
  return summary;
}

std::int64_t PlannerEngine::nextManualPosition(std::span<const FocusTask> tasks,
                                               const std::optional<LocalDay>& day,
                                               TaskPriority /*priority*/) {
  std::int64_t largest = -1;
  for (const FocusTask& task : tasks) {
    if (task.plannedDay != day || !isOpen(task)) continue;
    largest = std::max(largest, task.manualPosition);
  }
  return checkedSum(largest, 1);
}

}  // namespace brindlet

#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "support/Uuid.h"

namespace brindlet {

/// What one calendar week held, computed afresh from the tasks whenever it is asked for.
struct WeeklyReview {
  LocalDay weekStart;
  LocalDay weekEnd;
  std::int64_t plannedTaskCount = 0;
  /// Tasks planned for the week and completed in it.
  std::int64_t completedTaskCount = 0;
  double completionRate = 0;
  std::int64_t plannedMinutes = 0;
  /// Focus minutes of the tasks completed in the week, the fraction cut off.
  std::int64_t actualMinutes = 0;
  /// Planned and completed tasks by priority; a priority with none has no entry.
  std::map<TaskPriority, std::int64_t> completedByPriority{};
  std::vector<Uuid> carryoverTaskIDs{};
  std::vector<Uuid> skippedTaskIDs{};
  /// Estimated minutes of open planned work per day.
  std::map<LocalDay, std::int64_t> dailyWorkload{};
  /// Every task completed in the week, whichever week it was planned for, earliest first.
  std::vector<Uuid> completedTaskIDs{};

  friend bool operator==(const WeeklyReview&, const WeeklyReview&) = default;
};

}  // namespace brindlet

#pragma once

#include <cstdint>

namespace brindlet {

/// How much open work a day holds.
struct WorkloadSummary {
  /// Open tasks on the day.
  std::int64_t taskCount = 0;
  /// The sum of their estimates; a task without one adds nothing.
  std::int64_t estimatedMinutes = 0;

  friend bool operator==(const WorkloadSummary&, const WorkloadSummary&) = default;
};

}  // namespace brindlet

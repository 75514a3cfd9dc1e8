#pragma once

#include <cstdint>
#include <vector>

#include "persistence/TaskStore.h"
#include "persistence/TaskStoreSnapshot.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "records/PlanningProposal.h"
#include "review/RecommendationError.h"
#include "review/WeeklyReview.h"
#include "support/Calendar.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// Reviews a week, proposes at most three changes of plan, and carries one out only when the
/// user approves it.
class RecommendationEngine {
 public:
  static constexpr std::size_t kMaxProposals = 3;

  explicit RecommendationEngine(TaskStore& store) : store_(store) {}

  /// The week of the calendar that holds `date`, drawn from `tasks` in one pass.
  [[nodiscard]] static WeeklyReview review(Instant weekContaining,
                                           const std::vector<FocusTask>& tasks,
                                           const Calendar& calendar);

  /// Up to three proposals: one for each overloaded day of the review, earliest day first, then
  /// one for each task skipped twice or more. Made at `now`.
  [[nodiscard]] static std::vector<PlanningProposal> proposals(const WeeklyReview& review,
                                                               const std::vector<FocusTask>& tasks,
                                                               std::int64_t dailyCapacityMinutes,
                                                               Instant now);

  /// The next calendar day, whatever time zone or daylight-saving rules the user has.
  [[nodiscard]] static LocalDay nextDay(const LocalDay& day);

  /// Replaces the pending proposals with these; approved and dismissed ones stay as history.
  TaskStoreSnapshot save(const std::vector<PlanningProposal>& proposals,
                         std::int64_t expectedRevision, Instant now);
  /// Moves the task to the suggested day, unless it has moved since the proposal was made.
  TaskStoreSnapshot approve(const Uuid& proposalID, std::int64_t expectedRevision, Instant now);
  TaskStoreSnapshot dismiss(const Uuid& proposalID, std::int64_t expectedRevision, Instant now);

 private:
  TaskStore& store_;
};

}  // namespace brindlet

#include "review/RecommendationEngine.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace brindlet {
namespace {

constexpr std::int64_t kRepeatedSkips = 2;

// Whether the day is a real calendar date, so that ordering days orders their start instants.
bool isOrdinaryDay(const LocalDay& day) {
  constexpr std::int64_t kYearLimit = 1'000'000;
  if (day.year < -kYearLimit || day.year > kYearLimit || day.month < 1 || day.month > 12 ||
      day.day < 1 || day.day > 31) {
    return false;
  }
  return std::chrono::year_month_day(std::chrono::year(int(day.year)),
                                     std::chrono::month(unsigned(day.month)),
                                     std::chrono::day(unsigned(day.day)))
      .ok();
}

// Tells whether a planned day begins inside a week, the week's end included. Real dates are
// compared as days, which spares a calendar conversion per task; only odd components such as
// month 13 go through the calendar, which rolls them over.
class WeekOfDays {
 public:
  WeekOfDays(const DateInterval& week, const Calendar& calendar)
      : week_(week), calendar_(calendar), first_(week.start, calendar), last_(week.end, calendar) {}

  [[nodiscard]] bool contains(const LocalDay& day) const {
    if (isOrdinaryDay(day)) return first_ <= day && day <= last_;
    const auto start = day.date(calendar_);
    return start && contains(*start);
  }
  [[nodiscard]] bool contains(Instant instant) const {
    return week_.start <= instant && instant <= week_.end;
  }

 private:
  DateInterval week_;
  const Calendar& calendar_;
  LocalDay first_;
  LocalDay last_;
};

bool isOpen(const FocusTask& task) {
  return task.status != TaskStatus::completed && task.status != TaskStatus::archived;
}

// The most important task first, then the biggest, then by id. Upper-case UUID text sorts as
// the identifier's bytes do, so the bytes are compared.
bool comesFirstForProposal(const FocusTask& a, const FocusTask& b) {
  if (rank(a.priority) != rank(b.priority)) return rank(a.priority) < rank(b.priority);
  const std::int64_t aMinutes = a.estimatedMinutes.value_or(0);
  const std::int64_t bMinutes = b.estimatedMinutes.value_or(0);
  if (aMinutes != bMinutes) return aMinutes > bMinutes;
  return a.id < b.id;
}

PlanningProposal makeProposal(ProposalKind kind, const FocusTask& task, std::string reason,
                              std::optional<LocalDay> suggestedDay, Instant now) {
  return {.id = Uuid::random(),
          .kind = kind,
          .taskID = task.id,
          .reason = std::move(reason),
          .originalPlannedDay = task.plannedDay,
          .suggestedPlannedDay = suggestedDay,
          .status = ProposalStatus::pending,
          .createdAt = now};
}

void addOverloadProposals(const WeeklyReview& review, const std::vector<FocusTask>& tasks,
                          std::int64_t capacity, Instant now,
                          std::vector<PlanningProposal>& proposals) {
  for (const auto& [day, minutes] : review.dailyWorkload) {
    if (minutes <= capacity) continue;
    const FocusTask* first = nullptr;
    for (const FocusTask& task : tasks) {
      if (task.plannedDay == day && isOpen(task) &&
          (first == nullptr || comesFirstForProposal(task, *first))) {
        first = &task;
      }
    }
    if (first != nullptr) {
      proposals.push_back(makeProposal(ProposalKind::reduceLoad, *first,
                                       "Move work from an overloaded day",
                                       RecommendationEngine::nextDay(day), now));
    }
  }
}

void addSkipProposals(const std::vector<FocusTask>& tasks, Instant now,
                      std::vector<PlanningProposal>& proposals) {
  std::vector<const FocusTask*> skipped;
  for (const FocusTask& task : tasks) {
    if (task.skipCount >= kRepeatedSkips && isOpen(task)) skipped.push_back(&task);
  }
  std::stable_sort(skipped.begin(), skipped.end(), [](const FocusTask* a, const FocusTask* b) {
    return comesFirstForProposal(*a, *b);
  });
  for (const FocusTask* task : skipped) {
    std::optional<LocalDay> suggested;
    if (task->plannedDay) suggested = RecommendationEngine::nextDay(*task->plannedDay);
    proposals.push_back(makeProposal(ProposalKind::reschedule, *task,
                                     "This task has been skipped repeatedly", suggested, now));
  }
}

PlanningProposal& pendingProposal(PersistedState& state, const Uuid& proposalID) {
  const auto found = std::find_if(state.proposals.begin(), state.proposals.end(),
                                  [&](const PlanningProposal& p) { return p.id == proposalID; });
  if (found == state.proposals.end()) {
    throw RecommendationError(RecommendationError::Case::proposalNotFound);
  }
  if (found->status != ProposalStatus::pending) {
    throw RecommendationError(RecommendationError::Case::proposalNotPending);
  }
  return *found;
}

}  // namespace

WeeklyReview RecommendationEngine::review(Instant weekContaining,
                                          const std::vector<FocusTask>& tasks,
                                          const Calendar& calendar) {
  const DateInterval interval = calendar.weekInterval(weekContaining);
  const WeekOfDays week(interval, calendar);
  WeeklyReview review{.weekStart = LocalDay(interval.start, calendar),
                      .weekEnd = LocalDay(calendar.addingDays(interval.end, -1), calendar)};
  std::vector<const FocusTask*> completed;
  double focusSeconds = 0;
  std::int64_t plannedCompleted = 0;
  for (const FocusTask& task : tasks) {
    const bool completedInWeek = task.status == TaskStatus::completed && task.completedAt &&
                                 week.contains(*task.completedAt);
    if (completedInWeek) {
      completed.push_back(&task);
      focusSeconds += task.accumulatedFocusSeconds;
    }
    if (task.status == TaskStatus::archived || !task.plannedDay ||
        !week.contains(*task.plannedDay)) {
      continue;
    }
    const std::int64_t estimate = task.estimatedMinutes.value_or(0);
    review.plannedTaskCount += 1;
    review.plannedMinutes += estimate;
    if (completedInWeek) {
      plannedCompleted += 1;
      review.completedByPriority[task.priority] += 1;
    }
    if (task.status != TaskStatus::completed) {
      review.carryoverTaskIDs.push_back(task.id);
      review.dailyWorkload[*task.plannedDay] += estimate;
    }
    if (task.skipCount > 0) review.skippedTaskIDs.push_back(task.id);
  }
  review.completedTaskCount = plannedCompleted;
  review.completionRate = review.plannedTaskCount == 0
                              ? 0.0
                              : double(plannedCompleted) / double(review.plannedTaskCount);
  review.actualMinutes = static_cast<std::int64_t>(std::trunc(focusSeconds / 60.0));
  std::stable_sort(completed.begin(), completed.end(), [](const FocusTask* a, const FocusTask* b) {
    return *a->completedAt < *b->completedAt;
  });
  for (const FocusTask* task : completed) review.completedTaskIDs.push_back(task->id);
  std::sort(review.skippedTaskIDs.begin(), review.skippedTaskIDs.end());
  return review;
}

std::vector<PlanningProposal> RecommendationEngine::proposals(const WeeklyReview& review,
                                                              const std::vector<FocusTask>& tasks,
                                                              std::int64_t dailyCapacityMinutes,
                                                              Instant now) {
  std::vector<PlanningProposal> candidates;
  addOverloadProposals(review, tasks, dailyCapacityMinutes, now, candidates);
  addSkipProposals(tasks, now, candidates);
  std::vector<PlanningProposal> result;
  std::set<std::pair<ProposalKind, Uuid>> seen;
  for (PlanningProposal& candidate : candidates) {
    if (result.size() == kMaxProposals) break;
    if (seen.insert({candidate.kind, candidate.taskID}).second) {
      result.push_back(std::move(candidate));
    }
  }
  return result;
}

LocalDay RecommendationEngine::nextDay(const LocalDay& day) {
  static const Calendar utc = Calendar::gregorianUtc();
  const auto start = day.date(utc);
  if (!start) return {day.year, day.month, day.day + 1};
  return {utc.addingDays(*start, 1), utc};
}

TaskStoreSnapshot RecommendationEngine::save(const std::vector<PlanningProposal>& proposals,
                                             std::int64_t expectedRevision, Instant now) {
  return store_.transact(expectedRevision, MutationSource::agent, "proposals.generate",
                         std::nullopt, now, [proposals](PersistedState& state) {
                           std::erase_if(state.proposals, [](const PlanningProposal& p) {
                             return p.status == ProposalStatus::pending;
                           });
                           state.proposals.insert(state.proposals.end(), proposals.begin(),
                                                  proposals.end());
                         });
}

TaskStoreSnapshot RecommendationEngine::approve(const Uuid& proposalID,
                                                std::int64_t expectedRevision, Instant now) {
  return store_.transact(
      expectedRevision, MutationSource::user, "proposal.approve", std::nullopt, now,
      [proposalID, now](PersistedState& state) {
        PlanningProposal& proposal = pendingProposal(state, proposalID);
        const auto task = std::find_if(state.tasks.begin(), state.tasks.end(),
                                       [&](const FocusTask& t) { return t.id == proposal.taskID; });
        // Only a move of the task makes the proposal stale; other edits leave it valid.
        if (task == state.tasks.end() || task->plannedDay != proposal.originalPlannedDay) {
          throw RecommendationError(RecommendationError::Case::taskChanged);
        }
        task->plannedDay = proposal.suggestedPlannedDay;
        task->updatedAt = now;
        proposal.status = ProposalStatus::approved;
      });
}

TaskStoreSnapshot RecommendationEngine::dismiss(const Uuid& proposalID,
                                                std::int64_t expectedRevision, Instant now) {
  return store_.transact(expectedRevision, MutationSource::user, "proposal.dismiss", std::nullopt,
                         now, [proposalID](PersistedState& state) {
                           pendingProposal(state, proposalID).status = ProposalStatus::dismissed;
                         });
}

}  // namespace brindlet

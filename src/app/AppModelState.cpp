#include "app/AppModelState.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

#include "flow/PlannerEngine.h"
#include "review/RecommendationEngine.h"
#include "support/DateText.h"

namespace brindlet {
namespace {

constexpr int kDaysPerWeek = 7;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kSecondsPerHour = 3600;

}  // namespace

std::string title(DurationChoice choice) {
  switch (choice) {
    case DurationChoice::twentyFive:
      return "25 min";
    case DurationChoice::oneHour:
      return "1 hour";
    case DurationChoice::fourHours:
      return "4 hours";
    case DurationChoice::custom:
      return "Custom";
  }
  return {};
}

std::optional<FocusTask> AppModelState::activeTask() const {
  // A paused task counts: it is still the one being worked on, even with the timer stopped.
  for (const FocusTask& task : tasks()) {
    if (task.status == TaskStatus::active || task.status == TaskStatus::paused) return task;
  }
  return std::nullopt;
}

std::vector<PlanningProposal> AppModelState::pendingProposals() const {
  std::vector<PlanningProposal> pending;
  for (const PlanningProposal& proposal : taskSnapshot.state().proposals) {
    if (proposal.status == ProposalStatus::pending) pending.push_back(proposal);
  }
  return pending;
}

DomainGroup AppModelState::selectedGroup() const {
  if (selectedGroupID) {
    for (const DomainGroup& group : groups) {
      if (group.id == *selectedGroupID) return group;
    }
  }
  if (!groups.empty()) return groups.front();
  return DomainGroup::socialDistractions();
}

double AppModelState::duration() const {
  const std::int64_t minutes = durationChoice == DurationChoice::custom
                                   ? customMinutes
                                   : static_cast<std::int64_t>(durationChoice);
  std::int64_t seconds = 0;
  if (__builtin_mul_overflow(minutes, kSecondsPerMinute, &seconds)) std::abort();
  return static_cast<double>(seconds);
}

std::vector<LocalDay> AppModelState::daysInWeek(Instant date) const {
  const Instant start = planningCalendar.weekInterval(date).start;
  std::vector<LocalDay> days;
  days.reserve(kDaysPerWeek);
  for (int offset = 0; offset < kDaysPerWeek; ++offset) {
    days.emplace_back(planningCalendar.addingDays(start, offset), planningCalendar);
  }
  return days;
}

std::vector<LocalDay> AppModelState::weekDays() const {
  return daysInWeek(selectedDay.date(calendar).value_or(now));
}

std::vector<LocalDay> AppModelState::reviewWeekDays() const { return daysInWeek(reviewDate); }

std::vector<FocusTask> AppModelState::selectedDayTasks() const {
  return PlannerEngine::queueTasks(tasks(), selectedDay);
}

std::optional<FocusTask> AppModelState::nextTask() const {
  return PlannerEngine::nextTask(tasks(), selectedDay, now, calendar);
}

WeeklyReview AppModelState::weeklyReview() const {
  return RecommendationEngine::review(reviewDate, tasks(), planningCalendar);
}

PairingViewModel AppModelState::pairedDevicesPresentation() const {
  PairingViewInputs inputs;
  // Without a way to other devices the screen waits for the account, whatever else is held.
  inputs.pairingState = hasCrossDeviceCoordinator ? pairingState : PairingState::waitingForICloud;
  inputs.devices = pairedDevices;
  inputs.protectionStatuses = pairedDeviceProtection;
  if (activeSession) {
    inputs.sessionMode = activeSession->mode == SessionMode::strict ? SyncedSessionMode::strict
                                                                    : SyncedSessionMode::flexible;
  }
  inputs.now = now;
  return PairingViewModel(inputs, calendar);
}

std::string AppModelState::format(double seconds) {
  const double whole = std::floor(seconds);
  // A time that no clock can show means a broken value upstream, not something to display.
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (!std::isfinite(whole) || whole < -kLimit || whole >= kLimit) std::abort();
  const std::int64_t total = std::max<std::int64_t>(static_cast<std::int64_t>(whole), 0);
  char text[48];
  if (total < kSecondsPerHour) {
    std::snprintf(text, sizeof text, "%02" PRId64 ":%02" PRId64, total / kSecondsPerMinute,
                  total % kSecondsPerMinute);
  } else {
    std::snprintf(text, sizeof text, "%02" PRId64 ":%02" PRId64 ":%02" PRId64,
                  total / kSecondsPerHour, (total % kSecondsPerHour) / kSecondsPerMinute,
                  total % kSecondsPerMinute);
  }
  return text;
}

std::string AppModelState::countdown() const {
  const double remaining = activeSession ? std::max(0.0, activeSession->endsAt.since(now)) : 0.0;
  return format(remaining);
}

double AppModelState::focusSeconds(const FocusTask& task) const {
  double seconds = task.accumulatedFocusSeconds;
  // A clock set back must never take away time already recorded.
  if (task.activeSegmentStartedAt)
    seconds += std::max(0.0, now.since(*task.activeSegmentStartedAt));
  return seconds;
}

std::string AppModelState::elapsedText(const FocusTask& task) const {
  return format(focusSeconds(task));
}

std::string AppModelState::focusedDurationText(const FocusTask& task) const {
  const double minutesValue = std::trunc(focusSeconds(task) / 60.0);
  const auto minutes = static_cast<std::int64_t>(minutesValue);
  if (minutes < 1) return "Less than 1m focused";
  if (minutes >= 60) {
    return std::to_string(minutes / 60) + "h " + std::to_string(minutes % 60) + "m focused";
  }
  return std::to_string(minutes) + "m focused";
}

std::string AppModelState::dayLabel(const LocalDay& day) const {
  const std::optional<Instant> start = day.date(calendar);
  if (!start) return {};
  return dateText(*start, calendar, kShortDaySkeleton);
}

}  // namespace brindlet

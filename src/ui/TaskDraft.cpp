#include "TaskDraft.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "UiTexts.h"

namespace brindlet::ui {
namespace {

constexpr std::int64_t kEstimateStep = 5;
constexpr std::int64_t kMinEstimate = 5;
constexpr std::int64_t kMaxEstimate = 720;
constexpr std::int64_t kActualStep = 5;
constexpr std::int64_t kMaxActualMinutes = 1440;

QDateTime toDateTime(Instant instant) {
  return QDateTime::fromMSecsSinceEpoch(std::llround(instant.unixSeconds() * 1000.0));
}

Instant toInstant(const QDateTime& dateTime) {
  return Instant::fromUnix(static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0);
}

// A stepper press moves by one step and lands inside the range; a value outside the range
// stays as it is until pressed.
std::int64_t stepped(std::int64_t value, int direction, std::int64_t step, std::int64_t low,
                     std::int64_t high) {
  const std::int64_t next = direction > 0 ? value + step : value - step;
  return std::clamp(next, low, high);
}

}  // namespace

TaskDraft::TaskDraft(FocusTask task, std::vector<DomainGroup> groups, Instant openedAt,
                     QObject* parent)
    : QObject(parent),
      task_(std::move(task)),
      groups_(std::move(groups)),
      hasStart_(task_.scheduledStart.has_value()),
      start_(task_.scheduledStart.value_or(openedAt)),
      actualMinutes_(std::max<std::int64_t>(
          0, static_cast<std::int64_t>(task_.accumulatedFocusSeconds / 60))) {}

QString TaskDraft::taskId() const { return qs(task_.id.uppercaseText()); }

QString TaskDraft::title() const { return qs(task_.title); }

void TaskDraft::setTitle(const QString& title) {
  const std::string text = title.toStdString();
  if (text == task_.title) return;
  task_.title = text;
  emit changed();
}

QString TaskDraft::notes() const { return qs(task_.notes); }

void TaskDraft::setNotes(const QString& notes) {
  const std::string text = notes.toStdString();
  if (text == task_.notes) return;
  task_.notes = text;
  emit changed();
}

int TaskDraft::priority() const { return rank(task_.priority); }

void TaskDraft::setPriority(int index) {
  if (index < 0 || index >= static_cast<int>(kAllTaskPriorities.size())) return;
  const TaskPriority priority = kAllTaskPriorities[static_cast<std::size_t>(index)];
  if (priority == task_.priority) return;
  task_.priority = priority;
  emit changed();
}

QStringList TaskDraft::priorityTitles() const {
  QStringList titles;
  for (const TaskPriority priority : kAllTaskPriorities) titles << qs(priorityTitle(priority));
  return titles;
}

QString TaskDraft::estimateText() const {
  return QStringLiteral("%1 min").arg(task_.estimatedMinutes.value_or(kDefaultEstimate));
}

void TaskDraft::stepEstimate(int direction) {
  task_.estimatedMinutes = stepped(task_.estimatedMinutes.value_or(kDefaultEstimate), direction,
                                   kEstimateStep, kMinEstimate, kMaxEstimate);
  emit changed();
}

QString TaskDraft::timeSpentText() const {
  return QStringLiteral("Time spent: %1h %2m").arg(actualMinutes_ / 60).arg(actualMinutes_ % 60);
}

void TaskDraft::stepActualMinutes(int direction) {
  actualMinutes_ = stepped(actualMinutes_, direction, kActualStep, 0, kMaxActualMinutes);
  emit changed();
}

void TaskDraft::setHasStart(bool hasStart) {
  if (hasStart == hasStart_) return;
  hasStart_ = hasStart;
  emit changed();
}

QDateTime TaskDraft::start() const { return toDateTime(start_); }

void TaskDraft::setStart(const QDateTime& start) {
  start_ = toInstant(start);
  emit changed();
}

QString TaskDraft::startDateText() const {
  return QLocale().toString(start().date(), QLocale::ShortFormat);
}

int TaskDraft::startHour() const { return start().time().hour(); }

void TaskDraft::setStartHour(int hour) {
  QDateTime moved = start();
  const QTime time = moved.time();
  moved.setTime(QTime(std::clamp(hour, 0, 23), time.minute(), time.second()));
  setStart(moved);
}

int TaskDraft::startMinute() const { return start().time().minute(); }

void TaskDraft::setStartMinute(int minute) {
  QDateTime moved = start();
  const QTime time = moved.time();
  moved.setTime(QTime(time.hour(), std::clamp(minute, 0, 59), time.second()));
  setStart(moved);
}

void TaskDraft::shiftStartDays(int days) { setStart(start().addDays(days)); }

bool TaskDraft::reminderOn() const { return task_.reminder && task_.reminder->isEnabled; }

void TaskDraft::setReminderOn(bool on) {
  if (!on) {
    task_.reminder = TaskReminder{.isEnabled = false};
  } else if (!task_.reminder) {
    task_.reminder = TaskReminder{};
  }
  // A reminder that is present keeps its stored `isEnabled`, so switching one back on after it
  // was switched off has no effect and the switch falls back.
  emit changed();
}

bool TaskDraft::remindTenMinutesBefore() const {
  return task_.reminder && task_.reminder->remindTenMinutesBefore;
}

void TaskDraft::setRemindTenMinutesBefore(bool on) {
  if (!task_.reminder) return;
  task_.reminder->remindTenMinutesBefore = on;
  emit changed();
}

bool TaskDraft::remindWhenOverdue() const {
  return task_.reminder && task_.reminder->remindWhenOverdue;
}

void TaskDraft::setRemindWhenOverdue(bool on) {
  if (!task_.reminder) return;
  task_.reminder->remindWhenOverdue = on;
  emit changed();
}

QStringList TaskDraft::groupNames() const {
  QStringList names{QStringLiteral("None")};
  for (const DomainGroup& group : groups_) names << qs(group.name);
  return names;
}

int TaskDraft::groupIndex() const {
  if (!task_.blockingGroupID) return 0;
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    if (groups_[i].id == *task_.blockingGroupID) return static_cast<int>(i) + 1;
  }
  // An id that names none of the groups selects no entry, and is kept.
  return -1;
}

void TaskDraft::setGroupIndex(int index) {
  if (index < 0 || index > static_cast<int>(groups_.size())) return;
  if (index == groupIndex()) return;
  if (index == 0) {
    task_.blockingGroupID.reset();
  } else {
    task_.blockingGroupID = groups_[static_cast<std::size_t>(index) - 1].id;
  }
  emit changed();
}

bool TaskDraft::canSave() const { return !title().trimmed().isEmpty(); }

FocusTask TaskDraft::finishedTask() const {
  FocusTask finished = task_;
  finished.scheduledStart = hasStart_ ? std::optional<Instant>(start_) : std::nullopt;
  // Saving keeps whole minutes only; a segment still running goes on counting on its own.
  finished.accumulatedFocusSeconds = static_cast<double>(actualMinutes_) * 60.0;
  return finished;
}

}  // namespace brindlet::ui

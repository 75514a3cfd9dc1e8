#include "WeekScreen.h"

#include <QJSEngine>
#include <QVariantMap>
#include <vector>

#include "UiTexts.h"
#include "app/AppModel.h"
#include "flow/PlannerEngine.h"

namespace brindlet::ui {
namespace {

/// "{h}h {m}m", both parts always shown.
QString hoursAndMinutes(std::int64_t minutes) {
  return QStringLiteral("%1h %2m").arg(minutes / 60).arg(minutes % 60);
}

TaskRowData cardOf(const FocusTask& task) {
  return TaskRowData{
      .taskId = qs(task.id.uppercaseText()),
      .title = qs(task.title),
      .completed = task.status == TaskStatus::completed,
      .priority = qs(priorityRawValue(task.priority)),
      .priorityTitle = qs(priorityTitle(task.priority)),
      .estimateText =
          task.estimatedMinutes ? QStringLiteral("%1m").arg(*task.estimatedMinutes) : QString(),
      .focusedText = {},
      .hasReminder = task.reminder && task.reminder->isEnabled,
  };
}

std::vector<TaskRowData> cardsOf(const std::vector<FocusTask>& tasks) {
  std::vector<TaskRowData> cards;
  cards.reserve(tasks.size());
  for (const FocusTask& task : tasks) cards.push_back(cardOf(task));
  return cards;
}

}  // namespace

WeekScreen::WeekScreen(Dashboard& dashboard, QObject* parent) : ScreenModel(dashboard, parent) {
  for (TaskListModel& list : lists_) QJSEngine::setObjectOwnership(&list, QJSEngine::CppOwnership);
  refresh();
}

WeekScreen* WeekScreen::create(QQmlEngine*, QJSEngine*) {
  return new WeekScreen(*Dashboard::instance());
}

void WeekScreen::refresh() {
  const std::vector<FocusTask>& tasks = state().tasks();
  const std::vector<LocalDay> days = state().weekDays();
  for (int column = 0; column < kDayCount && column < static_cast<int>(days.size()); ++column) {
    lists_[static_cast<std::size_t>(column)].setRows(
        cardsOf(PlannerEngine::queueTasks(tasks, days[static_cast<std::size_t>(column)])));
  }
  std::vector<FocusTask> unscheduled;
  for (const FocusTask& task : tasks) {
    if (!task.plannedDay && task.status != TaskStatus::archived) unscheduled.push_back(task);
  }
  lists_[kUnscheduled].setRows(cardsOf(unscheduled));
}

QVariantList WeekScreen::columns() const {
  const std::int64_t capacity = state().taskSnapshot.state().preferences.dailyCapacityMinutes;
  QVariantList columns;
  for (const LocalDay& day : state().weekDays()) {
    const QString label = qs(state().dayLabel(day));
    const std::int64_t minutes = PlannerEngine::workload(state().tasks(), day).estimatedMinutes;
    columns << QVariantMap{
        {QStringLiteral("title"), label},
        {QStringLiteral("subtitle"), hoursAndMinutes(minutes)},
        // A day planned exactly to capacity is full, not overloaded.
        {QStringLiteral("overloaded"), minutes > capacity},
        {QStringLiteral("isDay"), true},
        {QStringLiteral("openName"), QStringLiteral("Open %1").arg(label)},
    };
  }
  columns << QVariantMap{
      {QStringLiteral("title"), QStringLiteral("Unscheduled")},
      {QStringLiteral("subtitle"), QStringLiteral("Choose when to do it")},
      {QStringLiteral("overloaded"), false},
      {QStringLiteral("isDay"), false},
      {QStringLiteral("openName"), QString()},
  };
  return columns;
}

QStringList WeekScreen::moveTargets() const {
  QStringList targets;
  for (const LocalDay& day : state().weekDays()) targets << qs(state().dayLabel(day));
  targets << QStringLiteral("Unscheduled");
  return targets;
}

TaskListModel* WeekScreen::taskList(int column) {
  if (column < 0 || column >= kColumnCount) return nullptr;
  return &lists_[static_cast<std::size_t>(column)];
}

void WeekScreen::showToday() {
  // The model's clock and calendar decide what today is, as they did for the day shown at start.
  post([](AppModel& model) {
    model.setSelectedDay(LocalDay(model.state().now, model.state().calendar));
  });
}

void WeekScreen::openDay(int column) {
  const std::optional<LocalDay> day = dayOf(column);
  if (!day) return;
  post([day = *day](AppModel& model) { model.setSelectedDay(day); });
  dashboard().setDestination(static_cast<int>(Destination::today));
}

void WeekScreen::moveTask(const QString& taskId, int column) {
  if (const std::optional<FocusTask> task = findTask(taskId)) (void)startMove(*task, column);
}

bool WeekScreen::dropOnColumn(const QString& text, int column) {
  // The first line is the first item of a drop that brings several.
  const QString first = text.section(QLatin1Char('\n'), 0, 0);
  const std::optional<FocusTask> task = findTask(first);
  return task && startMove(*task, column);
}

std::optional<FocusTask> WeekScreen::findTask(const QString& text) const {
  const std::optional<Uuid> id = Uuid::parse(text.trimmed().toStdString());
  if (!id) return std::nullopt;
  for (const FocusTask& task : state().tasks()) {
    if (task.id == *id) return task;
  }
  return std::nullopt;
}

std::optional<LocalDay> WeekScreen::dayOf(int column) const {
  const std::vector<LocalDay> days = state().weekDays();
  if (column < 0 || column >= static_cast<int>(days.size()) || column >= kDayCount) {
    return std::nullopt;
  }
  return days[static_cast<std::size_t>(column)];
}

bool WeekScreen::startMove(const FocusTask& task, int column) {
  // Where the task lands within the day is the command's business: no position is given.
  if (const std::optional<LocalDay> day = dayOf(column)) {
    post([task, day = *day](AppModel& model) { model.moveTask(task, day); });
    return true;
  }
  if (column == kUnscheduled) {
    post([task](AppModel& model) { model.unscheduleTask(task); });
    return true;
  }
  return false;
}

}  // namespace brindlet::ui

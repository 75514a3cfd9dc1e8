#include "Dashboard.h"

#include <QJSEngine>
#include <QQmlEngine>

#include "UiTexts.h"
#include "flow/PlannerEngine.h"

namespace brindlet::ui {
namespace {

Dashboard* gInstance = nullptr;

QString statusKey(TaskStatus status) {
  switch (status) {
    case TaskStatus::active:
      return QStringLiteral("active");
    case TaskStatus::paused:
      return QStringLiteral("paused");
    default:
      return QStringLiteral("other");
  }
}

TaskRowData rowOf(const FocusTask& task, const AppModelState& state) {
  const bool completed = task.status == TaskStatus::completed;
  return TaskRowData{
      .taskId = qs(task.id.uppercaseText()),
      .title = qs(task.title),
      .completed = completed,
      .priority = qs(priorityRawValue(task.priority)),
      .priorityTitle = qs(priorityTitle(task.priority)),
      .estimateText =
          task.estimatedMinutes ? QStringLiteral("%1 min").arg(*task.estimatedMinutes) : QString(),
      .focusedText = completed ? qs(state.focusedDurationText(task)) : QString(),
      .hasReminder = task.reminder && task.reminder->isEnabled,
  };
}

}  // namespace

Dashboard::Dashboard(ModelHost& host, std::shared_ptr<const Clock> clock, QObject* parent)
    : QObject(parent), host_(host), clock_(std::move(clock)), state_(host.state()) {
  gInstance = this;
  connect(&host_, &ModelHost::stateChanged, this, &Dashboard::onHostStateChanged);
  present(host_.state());
}

Dashboard::~Dashboard() {
  if (gInstance == this) gInstance = nullptr;
}

Dashboard* Dashboard::create(QQmlEngine*, QJSEngine*) {
  Q_ASSERT(gInstance);
  QJSEngine::setObjectOwnership(gInstance, QJSEngine::CppOwnership);
  return gInstance;
}

Dashboard* Dashboard::instance() { return gInstance; }

void Dashboard::onHostStateChanged() {
  AppModelState state = host_.state();
  // An alert the user dismissed stays away until the model has seen the dismissal.
  if (host_.publishedSequence() < alertDismissSequence_) state.editorError.reset();
  present(state);
  // Typing runs ahead of the model; its answer is taken once it has caught up with the field.
  if (host_.publishedSequence() >= quickTitleSequence_) {
    const QString published = qs(state.quickTitle);
    if (published != quickTitle_) {
      quickTitle_ = published;
      emit quickTitleChanged();
    }
  }
}

void Dashboard::present(const AppModelState& state) {
  state_ = state;
  weekStrip_.reset();
  refreshLists();
  emit changed();
}

void Dashboard::refreshLists() {
  std::vector<TaskRowData> open;
  std::vector<TaskRowData> done;
  for (const FocusTask& task : state_.selectedDayTasks()) {
    (task.status == TaskStatus::completed ? done : open).push_back(rowOf(task, state_));
  }
  queue_.setRows(std::move(open));
  completed_.setRows(std::move(done));
}

// ---- shell ----

QString Dashboard::navigationTitle() const { return qs(kNavigationTitle); }

QStringList Dashboard::destinationTitles() const {
  QStringList titles;
  for (const DestinationEntry& entry : kDestinations) titles << qs(entry.title);
  return titles;
}

QStringList Dashboard::destinationSymbols() const {
  QStringList symbols;
  for (const DestinationEntry& entry : kDestinations) symbols << qs(entry.symbol);
  return symbols;
}

void Dashboard::setDestination(int destination) {
  if (destination < -1 || destination >= static_cast<int>(kDestinations.size())) destination = -1;
  if (destination == destination_) return;
  destination_ = destination;
  emit destinationChanged();
}

bool Dashboard::alertShown() const { return state_.editorError.has_value(); }

QString Dashboard::alertText() const { return qs(state_.editorError.value_or("")); }

QString Dashboard::footerState() const {
  switch (ui::footerState(state_)) {
    case FooterState::attention:
      return QStringLiteral("attention");
    case FooterState::active:
      return QStringLiteral("active");
    case FooterState::ready:
      break;
  }
  return QStringLiteral("ready");
}

QString Dashboard::footerCaption() const { return qs(ui::footerCaption(ui::footerState(state_))); }

QString Dashboard::protectionError() const { return qs(state_.protectionError.value_or("")); }

void Dashboard::setWindowShown(bool shown) { host_.setWindowShown(shown); }

void Dashboard::dismissAlert() {
  if (!state_.editorError) return;
  alertDismissSequence_ = host_.post([](AppModel& model) { model.clearEditorError(); });
  state_.editorError.reset();
  emit changed();
}

void Dashboard::retryProtection() {
  host_.post([](AppModel& model) { model.retryProtection(); });
}

void Dashboard::openEditor(const FocusTask& task) {
  if (draft_) draft_->deleteLater();
  draft_ = new TaskDraft(task, state_.groups, clock_->now(), this);
  host_.post([task](AppModel& model) { model.setSelectedTask(task); });
  emit draftChanged();
}

void Dashboard::closeEditor() {
  if (!draft_) return;
  draft_->deleteLater();
  draft_ = nullptr;
  host_.post([](AppModel& model) { model.setSelectedTask(std::nullopt); });
  emit draftChanged();
}

void Dashboard::cancelEditor() { closeEditor(); }

void Dashboard::saveEditor() {
  if (!draft_ || !draft_->canSave()) return;
  const FocusTask finished = draft_->finishedTask();
  host_.post([finished](AppModel& model) { model.saveTask(finished); });
  closeEditor();
}

// ---- Today ----

QString Dashboard::dayTitle() const {
  // Before the plan is read, neither the day nor the calendar is the user's yet.
  if (!planRead()) return {};
  return qs(headerDate(state_.selectedDay, state_.calendar));
}

QString Dashboard::workloadText() const {
  if (!planRead()) return {};
  return qs(ui::workloadText(PlannerEngine::workload(state_.tasks(), state_.selectedDay)));
}

const Dashboard::WeekStrip& Dashboard::weekStrip() const {
  if (weekStrip_) return *weekStrip_;
  WeekStrip& strip = weekStrip_.emplace();
  const std::vector<LocalDay> days = state_.weekDays();
  if (!planRead()) {
    // Until the plan is read, the cells stand empty: no day or count is known yet.
    strip.labels = strip.counts = strip.names = QStringList(static_cast<int>(days.size()));
    return strip;
  }
  for (std::size_t i = 0; i < days.size(); ++i) {
    const QString label = qs(state_.dayLabel(days[i]));
    const auto count = PlannerEngine::workload(state_.tasks(), days[i]).taskCount;
    strip.labels << label;
    strip.counts << QString::number(count);
    strip.names << QStringLiteral("%1, %2 tasks").arg(label).arg(count);
    if (days[i] == state_.selectedDay) strip.selected = static_cast<int>(i);
  }
  return strip;
}

std::optional<FocusTask> Dashboard::cardTask() const {
  if (std::optional<FocusTask> active = state_.activeTask()) return active;
  return state_.nextTask();
}

QString Dashboard::cardStatus() const {
  const std::optional<FocusTask> task = cardTask();
  return task ? statusKey(task->status) : QString();
}

QString Dashboard::cardLabel() const {
  const QString status = cardStatus();
  if (status == QStringLiteral("active")) return QStringLiteral("IN FOCUS");
  if (status == QStringLiteral("paused")) return QStringLiteral("PAUSED");
  return QStringLiteral("NEXT TASK");
}

QString Dashboard::cardSymbol() const {
  return cardStatus() == QStringLiteral("active") ? QStringLiteral("timer")
                                                  : QStringLiteral("arrow.right.circle.fill");
}

QString Dashboard::cardTitle() const {
  const std::optional<FocusTask> task = cardTask();
  return task ? qs(task->title) : QString();
}

QString Dashboard::cardPriority() const {
  const std::optional<FocusTask> task = cardTask();
  return task ? qs(priorityRawValue(task->priority)) : QString();
}

QString Dashboard::cardEstimateText() const {
  const std::optional<FocusTask> task = cardTask();
  if (!task || !task->estimatedMinutes) return QStringLiteral("No estimate");
  return QStringLiteral("%1 min planned").arg(*task->estimatedMinutes);
}

QString Dashboard::cardElapsedText() const {
  const std::optional<FocusTask> task = cardTask();
  if (!task || (task->status != TaskStatus::active && task->status != TaskStatus::paused)) {
    return {};
  }
  return qs(state_.elapsedText(*task));
}

void Dashboard::setQuickTitle(const QString& title) {
  if (title == quickTitle_) return;
  quickTitle_ = title;
  quickTitleSequence_ =
      host_.post([text = title.toStdString()](AppModel& model) { model.setQuickTitle(text); });
  emit quickTitleChanged();
}

QString Dashboard::reminderWarning() const { return qs(state_.reminderWarning.value_or("")); }

void Dashboard::selectDay(int index) {
  const std::vector<LocalDay> days = state_.weekDays();
  if (index < 0 || index >= static_cast<int>(days.size())) return;
  const LocalDay day = days[static_cast<std::size_t>(index)];
  host_.post([day](AppModel& model) { model.setSelectedDay(day); });
}

void Dashboard::addTask() {
  host_.post([](AppModel& model) { model.addTask(); });
}

void Dashboard::startCardTask() {
  if (const std::optional<FocusTask> task = cardTask()) {
    host_.post([task = *task](AppModel& model) { model.startTask(task); });
  }
}

void Dashboard::pauseActiveTask() {
  host_.post([](AppModel& model) { model.pauseActiveTask(); });
}

void Dashboard::resumeCardTask() {
  if (const std::optional<FocusTask> task = cardTask()) {
    host_.post([task = *task](AppModel& model) { model.resumeTask(task); });
  }
}

void Dashboard::completeCardTask() {
  if (const std::optional<FocusTask> task = cardTask()) {
    host_.post([task = *task](AppModel& model) { model.completeTask(task); });
  }
}

void Dashboard::skipActiveTask() {
  host_.post([](AppModel& model) { model.skipActiveTask(); });
}

std::optional<FocusTask> Dashboard::findTask(const QString& taskId) const {
  const std::optional<Uuid> id = Uuid::parse(taskId.toStdString());
  if (!id) return std::nullopt;
  for (const FocusTask& task : state_.tasks()) {
    if (task.id == *id) return task;
  }
  return std::nullopt;
}

void Dashboard::completeTask(const QString& taskId) {
  if (const std::optional<FocusTask> task = findTask(taskId)) {
    host_.post([task = *task](AppModel& model) { model.completeTask(task); });
  }
}

void Dashboard::editTask(const QString& taskId) {
  if (taskId.isEmpty()) {
    if (const std::optional<FocusTask> task = cardTask()) openEditor(*task);
    return;
  }
  if (const std::optional<FocusTask> task = findTask(taskId)) openEditor(*task);
}

bool Dashboard::dropOnRow(const QString& text, const QString& targetId) {
  const std::optional<Uuid> source = Uuid::parse(text.trimmed().toStdString());
  const std::optional<Uuid> target = Uuid::parse(targetId.toStdString());
  if (!source || !target || *source == *target) return false;
  // The reorder decides what becomes of an id that names no task of the day.
  host_.post(
      [source = *source, target = *target](AppModel& model) { model.reorderTask(source, target); });
  return true;
}

}  // namespace brindlet::ui

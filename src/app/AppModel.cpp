#include "app/AppModel.h"

#include <algorithm>
#include <exception>
#include <map>
#include <utility>
#include <vector>

#include "blocking/DomainRules.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/PlatformDefaults.h"
#include "flow/PlannerEngine.h"
#include "flow/TaskSessionError.h"
#include "persistence/LocalStore.h"
#include "support/BrindletError.h"
#include "sync/SessionIntentRevision.h"

namespace brindlet {
namespace {

constexpr std::int64_t kDefaultFocusMinutes = 25;
constexpr double kSecondsPerMinute = 60.0;
// Names this machine in the intents it builds only to read protection, never to publish.
constexpr const char* kUnnamedSourceDevice = "mac";

const TaskStoreSnapshot& initialSnapshot() {
  static const TaskStoreSnapshot snapshot(
      std::make_shared<const PersistedState>(PersistedState::initial()));
  return snapshot;
}

std::string fileName(const std::filesystem::path& url) { return url.filename().string(); }

std::string reminderMessage(const ReminderWarning& warning) {
  switch (warning.which) {
    case ReminderWarning::Case::schedulingFailed:
      return "The task was saved, but its reminder could not be scheduled.";
    case ReminderWarning::Case::permissionDenied:
      return "Notifications are disabled in System Settings.";
  }
  return {};
}

FocusTask& storedTask(PersistedState& document, const Uuid& taskID) {
  const auto found =
      std::find_if(document.tasks.begin(), document.tasks.end(),
                   [&](const FocusTask& candidate) { return candidate.id == taskID; });
  if (found == document.tasks.end()) throw TaskSessionError(TaskSessionError::Case::taskNotFound);
  return *found;
}

// Clears a flag on every way out of the command that set it.
class FlagReset {
 public:
  explicit FlagReset(bool& flag) : flag_(flag) {}
  ~FlagReset() { flag_ = false; }
  FlagReset(const FlagReset&) = delete;
  FlagReset& operator=(const FlagReset&) = delete;

 private:
  bool& flag_;
};

}  // namespace

// Publishes the state once when the outermost public operation ends, so a command that calls
// another (resuming is starting) still reaches the screens as one change.
class AppModel::Publication {
 public:
  explicit Publication(AppModel& model) : model_(model) { ++model_.publicationDepth_; }
  ~Publication() {
    // Session changes the operation caused are taken up before the screens see its result.
    if (model_.publicationDepth_ == 1) model_.runPendingSessionChanges();
    if (--model_.publicationDepth_ == 0) model_.publish();
  }
  Publication(const Publication&) = delete;
  Publication& operator=(const Publication&) = delete;

 private:
  AppModel& model_;
};

// ---- composition ----

std::unique_ptr<AppModel> AppModel::live(std::shared_ptr<ReminderScheduling> scheduler,
                                         std::shared_ptr<const Clock> clock) {
  return compose(Composition{.folders = PlatformFolders::current(),
                             .hostsPath = defaultHostsPath(),
                             .runner = makePlatformPrivilegedRunner(),
                             .scheduler = std::move(scheduler),
                             .clock = std::move(clock),
                             .calendar = Calendar::current(),
                             // No cloud transport is linked into the program, so sessions
                             // stay on this machine.
                             .crossDeviceCoordinator = nullptr,
                             .syncDeviceID = std::nullopt});
}

std::unique_ptr<AppModel> AppModel::compose(Composition composition) {
  // Later steps take what earlier ones built; nothing creates a folder or writes a file here.
  const LocalStore local(composition.folders.stateFile(), composition.files);

  std::shared_ptr<TaskStore> taskStore;
  std::optional<std::string> startupError;
  try {
    // Held until the task store has loaded it, which then reads nothing.
    const SharedLoadedState migrated = local.migrateToCurrentSchema();
    taskStore = std::make_shared<TaskStore>(local);
  } catch (...) {
    // The file stays exactly as it is: the store serves the initial document and refuses every
    // write, because each transaction reads the file first.
    startupError =
        "Your Brindlet data could not be opened. The original file was left untouched: " +
        currentErrorText();
    taskStore = std::make_shared<TaskStore>(local, PersistedState::initial());
  }

  auto taskEngine = std::make_shared<TaskSessionEngine>(*taskStore, composition.calendar);
  auto blocker = std::make_shared<HostsBlockingEngine>(
      composition.hostsPath, composition.folders.hostsBackupFolder(), std::move(composition.runner),
      composition.files);
  auto engine = std::make_shared<SessionEngine>(local, std::move(blocker));
  auto focusCoordinator = std::make_shared<FocusCoordinator>(*taskEngine, *engine);
  ReminderCoordinator reminders(std::move(composition.scheduler));
  RecommendationEngine recommendations(*taskStore);
  DataBackupManager backups(local, composition.folders.dailyBackupFolder());

  auto model = std::make_unique<AppModel>(
      std::move(engine), std::move(taskStore), std::move(taskEngine), std::move(focusCoordinator),
      std::move(reminders), recommendations, std::move(backups), std::move(composition.clock),
      std::move(composition.calendar), std::move(composition.crossDeviceCoordinator),
      std::move(composition.syncDeviceID));
  model->engine_->onSessionChanged = model->sessionChangedCallback();
  // A broken profile literal stops the program here, at launch, not at the first session.
  (void)restrictionProfileID();
  // After construction, so that the start-up error is the first thing the alert shows.
  model->state_.editorError = std::move(startupError);
  return model;
}

AppModel::AppModel(std::shared_ptr<SessionEngine> engine, std::shared_ptr<TaskStore> taskStore,
                   std::shared_ptr<TaskSessionEngine> taskEngine,
                   std::shared_ptr<FocusCoordinator> focusCoordinator,
                   ReminderCoordinator reminders, RecommendationEngine recommendations,
                   DataBackupManager backups, std::shared_ptr<const Clock> clock, Calendar calendar,
                   std::shared_ptr<CrossDeviceSessionCoordinator> crossDeviceCoordinator,
                   std::optional<std::string> syncDeviceID)
    : engine_(std::move(engine)),
      taskStore_(std::move(taskStore)),
      taskEngine_(std::move(taskEngine)),
      focusCoordinator_(std::move(focusCoordinator)),
      reminders_(std::move(reminders)),
      recommendations_(recommendations),
      backups_(std::move(backups)),
      clock_(std::move(clock)),
      // Each of the three times asks the clock on its own, as the screens would.
      state_{.taskSnapshot = initialSnapshot(),
             .selectedDay = LocalDay(clock_->now(), calendar),
             .reviewDate = clock_->now(),
             .now = clock_->now(),
             .calendar = calendar,
             .planningCalendar =
                 Calendar(calendar.timeZoneId(), Calendar::kMonday, calendar.localeId())},
      crossDeviceCoordinator_(std::move(crossDeviceCoordinator)),
      syncDeviceID_(std::move(syncDeviceID)) {
  state_.hasCrossDeviceCoordinator = crossDeviceCoordinator_ != nullptr;
  // The engine holds its own starting groups here, not the file's; recover() selects again.
  if (!engine_->groups().empty()) state_.selectedGroupID = engine_->groups().front().id;
  state_.groups = engine_->groups();
  state_.activeSession = engine_->activeSession();
  state_.protectionStatus = engine_->protectionStatus();
}

AppModel::~AppModel() = default;

void AppModel::publish() {
  state_.groups = engine_->groups();
  state_.activeSession = engine_->activeSession();
  state_.protectionStatus = engine_->protectionStatus();
  if (!onChange_) return;
  try {
    onChange_(state_);
  } catch (...) {
    // A screen that fails to take the new value must not undo a change already on disk.
  }
}

void AppModel::fail() { state_.editorError = currentErrorText(); }

void AppModel::updateProtectionError() {
  // The coordinator's words are the more specific: they name the task that expects protection.
  if (focusCoordinator_->lastError()) {
    state_.protectionError = focusCoordinator_->lastError();
  } else {
    state_.protectionError = engine_->lastError();
  }
}

// ---- start-up and the one-second loop ----

void AppModel::recover() {
  const Publication publication(*this);
  focusCoordinator_->recover(state_.now);
  updateProtectionError();
  // Every start-up pass begins on the first group, whatever was selected before.
  state_.selectedGroupID.reset();
  if (!engine_->groups().empty()) state_.selectedGroupID = engine_->groups().front().id;
  refreshTasks();
  createDailyBackup();
  if (engine_->activeSession()) syncSessionTransition(engine_->activeSession());
  refreshPairedProtection();
}

void AppModel::heartbeat() {
  const Publication publication(*this);
  state_.now = clock_->now();
  engine_->tick(state_.now);
  refreshTasks();
  updateProtectionError();
  refreshPairedProtection();
}

void AppModel::refreshTasks() {
  const Publication publication(*this);
  state_.taskSnapshot = taskStore_->snapshot();
}

void AppModel::retryProtection() {
  const Publication publication(*this);
  engine_->retryProtection();
  state_.protectionError = engine_->lastError();
}

void AppModel::createDailyBackup() {
  const Publication publication(*this);
  try {
    const std::filesystem::path backup = backups_.createDailyBackup(state_.now, state_.calendar);
    state_.backupStatus = "Protected today · " + fileName(backup);
  } catch (...) {
    state_.backupStatus = "Backup needs attention";
    fail();
  }
}

// ---- paired devices ----

const Uuid& AppModel::restrictionProfileID() {
  // A literal that doesn't parse stops the process the first time it is asked for.
  static const Uuid profile = Uuid::fromLiteral("F0C05B10-0000-4000-8000-000000000001");
  return profile;
}

SessionEngine::SessionChanged AppModel::sessionChangedCallback() {
  return [weak = std::weak_ptr<AppModel*>(lifetime_)](const std::optional<BlockSession>& session) {
    const std::shared_ptr<AppModel*> alive = weak.lock();
    if (!alive) return;
    AppModel& model = **alive;
    model.pendingSessionChanges_.push_back(session);
    // Outside any operation of the model nothing else is waiting, so the change is taken up and
    // published at once.
    if (model.publicationDepth_ == 0) {
      const Publication publication(model);
    }
  };
}

void AppModel::runPendingSessionChanges() {
  // In the order the engine reported them; a change reported meanwhile waits its turn.
  while (!pendingSessionChanges_.empty()) {
    const std::optional<BlockSession> session = std::move(pendingSessionChanges_.front());
    pendingSessionChanges_.pop_front();
    try {
      syncSessionTransition(session);
    } catch (...) {
      // Telling other devices is never worth failing the operation that changed the session.
    }
  }
}

SyncedSessionIntent AppModel::intentFor(const BlockSession& subject, SyncedSessionState state,
                                        std::string sourceDeviceID) const {
  return SyncedSessionIntent{.sessionID = subject.id,
                             .profileID = restrictionProfileID(),
                             .mode = subject.mode == SessionMode::strict
                                         ? SyncedSessionMode::strict
                                         : SyncedSessionMode::flexible,
                             .startedAt = subject.startedAt,
                             .endsAt = subject.endsAt,
                             .revision = SessionIntentRevision::value(subject.startedAt, state),
                             .state = state,
                             .sourceDeviceID = std::move(sourceDeviceID)};
}

void AppModel::syncSessionTransition(const std::optional<BlockSession>& session) {
  SyncedSessionState intentState = SyncedSessionState::active;
  if (session) {
    lastSyncedSession_ = session;
  } else {
    // An end with no session seen before, as after a launch that found the session over.
    if (!lastSyncedSession_) return;
    // The last session stays, so a second end of it is told the same way again.
    intentState = SyncedSessionState::ended;
  }
  const BlockSession subject = *lastSyncedSession_;
  syncRevision_ = SessionIntentRevision::value(subject.startedAt, intentState);
  if (!crossDeviceCoordinator_ || !syncDeviceID_) return;

  const SyncedSessionIntent intent = intentFor(subject, intentState, *syncDeviceID_);
  try {
    crossDeviceCoordinator_->publish(intent, state_.now);
  } catch (...) {
    // The coordinator keeps the intent it resolved; the session on this machine goes on
    // regardless, and nothing is shown or tried again.
  }
  updateProtectionStatuses(intent);
}

void AppModel::refreshPairedProtection() {
  if (!crossDeviceCoordinator_) {
    state_.pairingState = PairingState::waitingForICloud;
    state_.pairedDevices.clear();
    return;
  }
  try {
    // The batch itself is of no use here: the snapshot below holds everything taken in.
    crossDeviceCoordinator_->refresh(state_.now);
    state_.pairingState = PairingState::paired;
  } catch (...) {
    // What the coordinator last knew is still worth showing.
    state_.pairingState = PairingState::offline;
  }
  std::vector<PairedDevice> phones;
  for (const PairedDevice& device : crossDeviceCoordinator_->snapshot().devices) {
    if (device.platform == FocusDevicePlatform::iOS) phones.push_back(device);
  }
  state_.pairedDevices = std::move(phones);

  const std::optional<BlockSession>& active = engine_->activeSession();
  const std::optional<BlockSession>& subject = active ? active : lastSyncedSession_;
  if (!subject) {
    state_.pairedDeviceProtection.clear();
    return;
  }
  const SyncedSessionState intentState =
      subject == active ? SyncedSessionState::active : SyncedSessionState::ended;
  updateProtectionStatuses(
      intentFor(*subject, intentState, syncDeviceID_.value_or(kUnnamedSourceDevice)));
}

void AppModel::updateProtectionStatuses(const SyncedSessionIntent& intent) {
  if (!crossDeviceCoordinator_) return;
  std::map<std::string, DeviceProtectionStatus> statuses;
  for (const PairedDevice& device : crossDeviceCoordinator_->snapshot().devices) {
    if (device.platform != FocusDevicePlatform::iOS) continue;
    statuses.insert_or_assign(device.id, crossDeviceCoordinator_->protectionStatus(
                                             device.id, intent.sessionID, state_.now));
  }
  state_.pairedDeviceProtection = std::move(statuses);
}

// ---- what the screens edit directly ----

void AppModel::setSelectedDay(const LocalDay& day) {
  const Publication publication(*this);
  state_.selectedDay = day;
}

void AppModel::setQuickTitle(std::string title) {
  const Publication publication(*this);
  state_.quickTitle = std::move(title);
}

void AppModel::setSelectedTask(std::optional<FocusTask> task) {
  const Publication publication(*this);
  state_.selectedTask = std::move(task);
}

void AppModel::setDomainInput(std::string text) {
  const Publication publication(*this);
  state_.domainInput = std::move(text);
}

void AppModel::setDurationChoice(DurationChoice choice) {
  const Publication publication(*this);
  state_.durationChoice = choice;
}

void AppModel::setCustomMinutes(std::int64_t minutes) {
  const Publication publication(*this);
  state_.customMinutes = minutes;
}

void AppModel::setSelectedMode(SessionMode mode) {
  const Publication publication(*this);
  state_.selectedMode = mode;
}

void AppModel::clearEditorError() {
  const Publication publication(*this);
  state_.editorError.reset();
}

void AppModel::clearReminderWarning() {
  const Publication publication(*this);
  state_.reminderWarning.reset();
}

// ---- planning ----

std::exception_ptr AppModel::transactTask(std::string_view action, const Uuid& taskID,
                                          const TaskChange& change) {
  // The revision and the time are read just before the call: the last heartbeat's values.
  const std::int64_t expectedRevision = state_.taskSnapshot.revision();
  try {
    state_.taskSnapshot = taskStore_->transact(
        expectedRevision, MutationSource::user, action, taskID, state_.now,
        [&](PersistedState& document) { change(document, storedTask(document, taskID)); });
  } catch (...) {
    return std::current_exception();
  }
  return nullptr;
}

void AppModel::addTask() {
  const Publication publication(*this);
  const Instant now = state_.now;
  const std::int64_t position =
      PlannerEngine::nextManualPosition(state_.tasks(), state_.selectedDay, TaskPriority::normal);
  std::optional<FocusTask> task;
  try {
    task.emplace(state_.quickTitle, now,
                 FocusTask::Fields{.plannedDay = state_.selectedDay,
                                   .priority = TaskPriority::normal,
                                   .manualPosition = position});
  } catch (...) {
    fail();
    return;
  }
  try {
    state_.taskSnapshot = taskStore_->transact(
        state_.taskSnapshot.revision(), MutationSource::user, "task.create", task->id, now,
        [&](PersistedState& document) { document.tasks.push_back(*task); });
  } catch (...) {
    fail();
    return;
  }
  state_.quickTitle.clear();
  state_.editorError.reset();
}

void AppModel::saveTask(const FocusTask& task) {
  const Publication publication(*this);
  const Instant now = state_.now;
  const std::exception_ptr failure =
      transactTask("task.update", task.id, [&](PersistedState&, FocusTask& stored) {
        task.validate();
        // Only what the editor offers; the life-cycle fields stay as stored, so an edit can't
        // disturb a running task.
        stored.title = task.title;
        stored.notes = task.notes;
        stored.plannedDay = task.plannedDay;
        stored.scheduledStart = task.scheduledStart;
        stored.estimatedMinutes = task.estimatedMinutes;
        stored.priority = task.priority;
        stored.reminder = task.reminder;
        stored.blockingGroupID = task.blockingGroupID;
        stored.accumulatedFocusSeconds = task.accumulatedFocusSeconds;
        stored.updatedAt = now;
      });
  if (failure) {
    state_.editorError = errorText(failure);
    return;
  }
  state_.selectedTask.reset();
  // The task is saved before reminders are tried, so their trouble is only ever a warning.
  if (const std::optional<ReminderWarning> warning = reminders_.sync(task)) {
    state_.reminderWarning = reminderMessage(*warning);
  }
}

void AppModel::moveTask(const FocusTask& task, const LocalDay& day,
                        std::optional<std::int64_t> position) {
  const Publication publication(*this);
  const Instant now = state_.now;
  const std::exception_ptr failure =
      transactTask("task.move", task.id, [&](PersistedState& document, FocusTask& stored) {
        const std::int64_t place = position.value_or(
            PlannerEngine::nextManualPosition(document.tasks, day, task.priority));
        // The start time stays: a moved task keeps its hour, and its reminders stay as they are.
        stored.plannedDay = day;
        stored.manualPosition = place;
        stored.updatedAt = now;
      });
  if (failure) state_.editorError = errorText(failure);
}

void AppModel::unscheduleTask(const FocusTask& task) {
  const Publication publication(*this);
  const Instant now = state_.now;
  const std::exception_ptr failure =
      transactTask("task.unschedule", task.id, [&](PersistedState&, FocusTask& stored) {
        stored.plannedDay.reset();
        stored.scheduledStart.reset();
        stored.updatedAt = now;
      });
  if (failure) {
    state_.editorError = errorText(failure);
    return;
  }
  reminders_.cancel(task.id);
}

void AppModel::reorderTask(const Uuid& source, const Uuid& destination) {
  const Publication publication(*this);
  const Instant now = state_.now;
  const LocalDay day = state_.selectedDay;
  // The whole new order is worked out from what the screen showed; the transaction only writes
  // the positions of that day's tasks.
  std::map<Uuid, std::int64_t> positions;
  for (const FocusTask& task : PlannerEngine::reorder(state_.tasks(), source, destination, day)) {
    positions.emplace(task.id, task.manualPosition);
  }
  const std::exception_ptr failure =
      transactTask("task.reorder", source, [&](PersistedState& document, FocusTask&) {
        for (FocusTask& task : document.tasks) {
          if (task.plannedDay != day) continue;
          const auto found = positions.find(task.id);
          if (found == positions.end()) continue;
          task.manualPosition = found->second;
          task.updatedAt = now;
        }
      });
  if (failure) {
    // After a lost race the current order is on screen before the alert comes up.
    refreshTasks();
    state_.editorError = errorText(failure);
  }
}

// ---- review ----

void AppModel::generateRecommendations() {
  const Publication publication(*this);
  const std::vector<PlanningProposal> proposals = RecommendationEngine::proposals(
      state_.weeklyReview(), state_.tasks(),
      state_.taskSnapshot.state().preferences.dailyCapacityMinutes, state_.now);
  try {
    state_.taskSnapshot =
        recommendations_.save(proposals, state_.taskSnapshot.revision(), state_.now);
  } catch (...) {
    fail();
  }
}

void AppModel::approveProposal(const PlanningProposal& proposal) {
  const Publication publication(*this);
  try {
    state_.taskSnapshot =
        recommendations_.approve(proposal.id, state_.taskSnapshot.revision(), state_.now);
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    refreshTasks();
    state_.editorError = errorText(failure);
  }
}

void AppModel::dismissProposal(const PlanningProposal& proposal) {
  const Publication publication(*this);
  try {
    state_.taskSnapshot =
        recommendations_.dismiss(proposal.id, state_.taskSnapshot.revision(), state_.now);
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    refreshTasks();
    state_.editorError = errorText(failure);
  }
}

void AppModel::approveAllProposals() {
  const Publication publication(*this);
  // Each one is its own transaction at the revision the previous one left; a failure of one
  // doesn't stop the rest.
  for (const PlanningProposal& proposal : state_.pendingProposals()) approveProposal(proposal);
}

void AppModel::dismissAllProposals() {
  const Publication publication(*this);
  for (const PlanningProposal& proposal : state_.pendingProposals()) dismissProposal(proposal);
}

void AppModel::changeReviewWeek(int weeks) {
  const Publication publication(*this);
  state_.reviewDate = state_.calendar.addingWeeks(state_.reviewDate, weeks);
}

// ---- focus ----

void AppModel::startTask(const FocusTask& task) {
  const Publication publication(*this);
  state_.isWorking = true;
  const FlagReset working(state_.isWorking);
  // The screens show the work going on while the administrator is asked for approval.
  publish();

  std::optional<DomainGroup> group;
  if (task.blockingGroupID) group = engine_->group(*task.blockingGroupID);
  const std::int64_t minutes =
      std::max<std::int64_t>(task.estimatedMinutes.value_or(kDefaultFocusMinutes), 1);
  const double duration = static_cast<double>(minutes) * kSecondsPerMinute;
  try {
    state_.taskSnapshot = focusCoordinator_->start(task.id, group, duration, state_.selectedMode,
                                                   state_.now, state_.taskSnapshot.revision());
    state_.editorError.reset();
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    refreshTasks();
    state_.editorError = errorText(failure);
  }
}

void AppModel::pauseActiveTask() {
  const Publication publication(*this);
  try {
    state_.taskSnapshot = focusCoordinator_->pause(state_.now, state_.taskSnapshot.revision());
  } catch (...) {
    fail();
  }
}

void AppModel::resumeTask(const FocusTask& task) {
  // Resuming is starting again: the selected mode, and blocking for the task's estimate anew.
  startTask(task);
}

void AppModel::skipActiveTask() {
  const Publication publication(*this);
  try {
    state_.taskSnapshot = focusCoordinator_->skip(state_.now, state_.taskSnapshot.revision());
  } catch (...) {
    fail();
  }
}

void AppModel::completeTask(const FocusTask& task) {
  const Publication publication(*this);
  // The value on screen decides: only a task shown as running goes through the coordinator.
  if (task.status == TaskStatus::active) {
    try {
      state_.taskSnapshot = focusCoordinator_->complete(state_.now, state_.taskSnapshot.revision());
    } catch (...) {
      fail();
      return;
    }
    reminders_.cancel(task.id);
    return;
  }
  // A paused task keeps its segment and any session: the coordinator isn't involved.
  const Instant now = state_.now;
  const std::exception_ptr failure =
      transactTask("task.complete", task.id, [&](PersistedState&, FocusTask& stored) {
        stored.status = TaskStatus::completed;
        stored.completedAt = now;
        stored.updatedAt = now;
      });
  if (failure) {
    state_.editorError = errorText(failure);
    return;
  }
  reminders_.cancel(task.id);
}

// ---- blocking ----

void AppModel::start() {
  const Publication publication(*this);
  state_.isWorking = true;
  const FlagReset working(state_.isWorking);
  publish();
  try {
    // The session's times come from the clock itself, not the last heartbeat.
    engine_->start(state_.selectedGroup(), state_.duration(), state_.selectedMode, clock_->now());
  } catch (...) {
    fail();
  }
}

void AppModel::endFlexible() {
  const Publication publication(*this);
  state_.isWorking = true;
  const FlagReset working(state_.isWorking);
  publish();
  try {
    engine_->endFlexible(clock_->now());
  } catch (...) {
    fail();
  }
}

std::optional<std::size_t> AppModel::selectedGroupIndex() const {
  // Mirrors selectedGroup() over the engine's own list; the seeded stand-in for an empty list
  // is no group that could be edited.
  const std::vector<DomainGroup>& groups = engine_->groups();
  if (groups.empty()) return std::nullopt;
  if (state_.selectedGroupID) {
    for (std::size_t index = 0; index < groups.size(); ++index) {
      if (groups[index].id == *state_.selectedGroupID) return index;
    }
  }
  return 0;
}

void AppModel::addDomain() {
  const Publication publication(*this);
  std::string domain;
  try {
    domain = DomainRules::normalize(state_.domainInput);
  } catch (...) {
    fail();
    return;
  }
  const std::optional<std::size_t> index = selectedGroupIndex();
  if (!index) return;
  std::vector<DomainGroup> groups = engine_->groups();
  std::vector<DomainRule>& rules = groups[*index].rules;
  // A disabled rule counts too: the user would find the domain already listed.
  if (std::any_of(rules.begin(), rules.end(),
                  [&](const DomainRule& rule) { return rule.domain == domain; })) {
    state_.editorError = "That domain is already in this group.";
    return;
  }
  rules.push_back(DomainRule{.id = Uuid::random(), .domain = domain, .isEnabled = true});
  try {
    engine_->replaceGroups(std::move(groups));
  } catch (...) {
    fail();
    return;
  }
  state_.domainInput.clear();
  state_.editorError.reset();
}

void AppModel::mutate(const DomainRule& rule, const std::function<void(DomainRule&)>& change) {
  const std::optional<std::size_t> index = selectedGroupIndex();
  if (!index) return;
  std::vector<DomainGroup> groups = engine_->groups();
  std::vector<DomainRule>& rules = groups[*index].rules;
  const auto found = std::find_if(rules.begin(), rules.end(), [&](const DomainRule& candidate) {
    return candidate.id == rule.id;
  });
  if (found == rules.end()) return;
  change(*found);
  try {
    engine_->replaceGroups(std::move(groups));
  } catch (...) {
    fail();
  }
}

void AppModel::setEnabled(const DomainRule& rule, bool enabled) {
  const Publication publication(*this);
  mutate(rule, [enabled](DomainRule& stored) { stored.isEnabled = enabled; });
}

void AppModel::remove(const DomainRule& rule) {
  const Publication publication(*this);
  const std::optional<std::size_t> index = selectedGroupIndex();
  if (!index) return;
  std::vector<DomainGroup> groups = engine_->groups();
  std::erase_if(groups[*index].rules,
                [&](const DomainRule& candidate) { return candidate.id == rule.id; });
  try {
    engine_->replaceGroups(std::move(groups));
  } catch (...) {
    fail();
  }
}

// ---- data safety ----

void AppModel::exportBackup(const std::filesystem::path& url) {
  const Publication publication(*this);
  try {
    backups_.exportBackup(url);
  } catch (...) {
    fail();
    return;
  }
  state_.backupStatus = "Exported · " + fileName(url);
}

void AppModel::restoreBackup(const std::filesystem::path& url) {
  const Publication publication(*this);
  try {
    backups_.restoreBackup(url);
  } catch (...) {
    fail();
    return;
  }
  // The session engine keeps its groups and session until the next start-up pass.
  refreshTasks();
  state_.backupStatus = "Restored · " + fileName(url);
}

}  // namespace brindlet

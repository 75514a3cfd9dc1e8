#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/AppModelState.h"
#include "app/PlatformFolders.h"
#include "blocking/PrivilegedCommandRunning.h"
#include "blocking/SessionEngine.h"
#include "flow/FocusCoordinator.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/DataBackupManager.h"
#include "persistence/TaskStore.h"
#include "records/DomainRule.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "records/PlanningProposal.h"
#include "reminders/ReminderCoordinator.h"
#include "reminders/ReminderScheduling.h"
#include "review/RecommendationEngine.h"
#include "support/Calendar.h"
#include "support/Clock.h"
#include "support/FileService.h"
#include "support/Uuid.h"
#include "sync/CrossDeviceSessionCoordinator.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// The one object through which the screens see and change Brindlet. It owns the engines, runs
/// every command on the model thread, and after each command, heartbeat or start-up pass
/// publishes its whole observable state as one immutable value through `onChange`.
///
/// Nothing here fails towards the caller: every failure ends in `editorError`, or in one of the
/// quieter lines (`protectionError`, `reminderWarning`, `backupStatus`).
class AppModel {
 public:
  using ChangeCallback = std::function<void(const AppModelState&)>;

  /// What a model is built over: where its files live, the system it changes and the services
  /// it is given.
  struct Composition {
    PlatformFolders folders;
    std::filesystem::path hostsPath;
    std::shared_ptr<PrivilegedCommandRunning> runner;
    std::shared_ptr<ReminderScheduling> scheduler;
    std::shared_ptr<const Clock> clock;
    Calendar calendar;
    /// The way to paired devices, and this machine's name in their records. The program's own
    /// composition has neither, so each session stops at the model.
    std::shared_ptr<CrossDeviceSessionCoordinator> crossDeviceCoordinator{};
    std::optional<std::string> syncDeviceID{};
    /// The file calls under the state file, its backups and the hosts file's copies.
    std::shared_ptr<const FileService> files = FileService::system();
  };

  /// The model of this user on this machine: the platform folders, the system hosts file, the
  /// platform's privileged runner and the user's calendar. Never fails: a state file that can't
  /// be opened leaves the model in recovery mode, with the reason in `editorError`.
  [[nodiscard]] static std::unique_ptr<AppModel> live(std::shared_ptr<ReminderScheduling> scheduler,
                                                      std::shared_ptr<const Clock> clock);
  /// Builds every engine over the given surroundings, opens the state and hands back the model,
  /// exactly as `live` does. Reads the state file; writes nothing.
  [[nodiscard]] static std::unique_ptr<AppModel> compose(Composition composition);

  /// Stores its collaborators and sets the starting values; reads nothing from disk.
  AppModel(std::shared_ptr<SessionEngine> engine, std::shared_ptr<TaskStore> taskStore,
           std::shared_ptr<TaskSessionEngine> taskEngine,
           std::shared_ptr<FocusCoordinator> focusCoordinator, ReminderCoordinator reminders,
           RecommendationEngine recommendations, DataBackupManager backups,
           std::shared_ptr<const Clock> clock, Calendar calendar,
           std::shared_ptr<CrossDeviceSessionCoordinator> crossDeviceCoordinator = nullptr,
           std::optional<std::string> syncDeviceID = std::nullopt);
  AppModel(const AppModel&) = delete;
  AppModel& operator=(const AppModel&) = delete;
  ~AppModel();

  /// The observable state as of now.
  [[nodiscard]] const AppModelState& state() const { return state_; }
  /// Called with the new state after each change, on the model thread.
  void setOnChange(ChangeCallback callback) { onChange_ = std::move(callback); }

  [[nodiscard]] SessionEngine& engine() const { return *engine_; }
  [[nodiscard]] TaskStore& taskStore() const { return *taskStore_; }

  // ---- paired devices ----
  /// The restriction profile that every session's intent names; the iPhone keeps the apps.
  [[nodiscard]] static const Uuid& restrictionProfileID();
  /// Absent in the program's own composition.
  [[nodiscard]] CrossDeviceSessionCoordinator* crossDeviceCoordinator() const {
    return crossDeviceCoordinator_.get();
  }
  [[nodiscard]] const std::optional<std::string>& syncDeviceID() const { return syncDeviceID_; }
  /// The last session the model told the other devices about, or would have; kept after it ends
  /// so that its end can be told too.
  [[nodiscard]] const std::optional<BlockSession>& lastSyncedSession() const {
    return lastSyncedSession_;
  }
  /// The revision of the last intent built for a session.
  [[nodiscard]] std::int64_t syncRevision() const { return syncRevision_; }

  // ---- start-up and the one-second loop ----
  /// The start-up pass, each time the main window comes up: puts the task and session engines
  /// back in order, rereads the plan and takes the day's backup.
  void recover();
  /// One tick, about once a second while the main window is up: advances `now`, ends an expired
  /// session and rereads the state file, so changes by other writers show.
  void heartbeat();
  /// The plan as the state file holds it now.
  void refreshTasks();
  /// Tries again to put the running session's block in place.
  void retryProtection();
  /// Copies the state file to today's backup, once a day.
  void createDailyBackup();

  // ---- what the screens edit directly ----
  void setSelectedDay(const LocalDay& day);
  void setQuickTitle(std::string title);
  void setSelectedTask(std::optional<FocusTask> task);
  void setDomainInput(std::string text);
  void setDurationChoice(DurationChoice choice);
  void setCustomMinutes(std::int64_t minutes);
  void setSelectedMode(SessionMode mode);
  /// The alert was dismissed.
  void clearEditorError();
  void clearReminderWarning();

  // ---- planning ----
  /// Adds `quickTitle` as a task of `selectedDay`, at the end of its queue.
  void addTask();
  /// Stores the editable fields of an edited task, then brings its reminders in line.
  void saveTask(const FocusTask& task);
  /// Plans the task on another day, at `position` or behind the tasks already there.
  void moveTask(const FocusTask& task, const LocalDay& day,
                std::optional<std::int64_t> position = std::nullopt);
  /// Takes the task off its day and drops its reminders.
  void unscheduleTask(const FocusTask& task);
  /// Moves one task of `selectedDay` into the place of another.
  void reorderTask(const Uuid& source, const Uuid& destination);

  // ---- review ----
  void generateRecommendations();
  void approveProposal(const PlanningProposal& proposal);
  void dismissProposal(const PlanningProposal& proposal);
  void approveAllProposals();
  void dismissAllProposals();
  /// Moves the review by whole weeks, back when negative.
  void changeReviewWeek(int weeks);

  // ---- focus ----
  /// Starts work on the task, with its blocking group for the length of its estimate.
  void startTask(const FocusTask& task);
  void pauseActiveTask();
  void resumeTask(const FocusTask& task);
  void skipActiveTask();
  void completeTask(const FocusTask& task);

  // ---- blocking ----
  /// Starts a blocking session of the selected group, length and mode.
  void start();
  /// Ends a flexible session early.
  void endFlexible();
  /// Adds `domainInput` to the selected group.
  void addDomain();
  void setEnabled(const DomainRule& rule, bool enabled);
  void remove(const DomainRule& rule);

  // ---- data safety ----
  void exportBackup(const std::filesystem::path& url);
  void restoreBackup(const std::filesystem::path& url);

 private:
  class Publication;
  using TaskChange = std::function<void(PersistedState& document, FocusTask& stored)>;

  // The shared shape of a task command: one transaction at the current revision and the last
  // heartbeat's time, with `change` given the stored task of `taskID`. Gives the failure, or
  // nothing once the new snapshot is in place; the caller decides how the failure shows.
  [[nodiscard]] std::exception_ptr transactTask(std::string_view action, const Uuid& taskID,
                                                const TaskChange& change);
  void mutate(const DomainRule& rule, const std::function<void(DomainRule&)>& change);
  // The index in `engine.groups` of the group the blocking screens show; absent without one.
  [[nodiscard]] std::optional<std::size_t> selectedGroupIndex() const;
  void updateProtectionError();
  void fail();
  void publish();

  // ---- paired devices ----
  // What the session engine is told to call when a session begins, is found again or ends. It
  // only queues the change: the model takes it up once the operation under way is finished,
  // and not at all once the model is gone.
  [[nodiscard]] SessionEngine::SessionChanged sessionChangedCallback();
  void runPendingSessionChanges();
  // Tells the other devices that `session` runs, or with nothing that the last one ended.
  void syncSessionTransition(const std::optional<BlockSession>& session);
  // Brings back what the other devices reported since the last refresh.
  void refreshPairedProtection();
  void updateProtectionStatuses(const SyncedSessionIntent& intent);
  [[nodiscard]] SyncedSessionIntent intentFor(const BlockSession& subject, SyncedSessionState state,
                                              std::string sourceDeviceID) const;

  std::shared_ptr<SessionEngine> engine_;
  std::shared_ptr<TaskStore> taskStore_;
  std::shared_ptr<TaskSessionEngine> taskEngine_;
  std::shared_ptr<FocusCoordinator> focusCoordinator_;
  ReminderCoordinator reminders_;
  RecommendationEngine recommendations_;
  DataBackupManager backups_;
  std::shared_ptr<const Clock> clock_;
  AppModelState state_;
  ChangeCallback onChange_;
  int publicationDepth_ = 0;

  std::shared_ptr<CrossDeviceSessionCoordinator> crossDeviceCoordinator_;
  std::optional<std::string> syncDeviceID_;
  std::optional<BlockSession> lastSyncedSession_;
  std::int64_t syncRevision_ = 0;
  // Session changes reported by the engine and not yet taken up, oldest first.
  std::deque<std::optional<BlockSession>> pendingSessionChanges_;
  // The engine's callback holds this weakly, so that it can tell whether the model still exists.
  std::shared_ptr<AppModel*> lifetime_ = std::make_shared<AppModel*>(this);
};

}  // namespace brindlet

#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Builders.h"
#include "FakePrivilegedRunner.h"
#include "ManualClock.h"
#include "RecordingReminderScheduler.h"
#include "SessionFixture.h"
#include "TempDir.h"
#include "app/AppModel.h"
#include "app/PlatformFolders.h"
#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "support/Calendar.h"

namespace brindlet::testing {

/// The day of kTestNow in UTC, a Saturday.
inline constexpr LocalDay kToday{2026, 11, 21};

/// Everything a whole model touches, inside one temporary folder: stand-ins for the application
/// data and documents folders, a hosts file, a runner that copies files without privileges, a
/// notification service that records, and a clock that moves only when told.
class AppModelTest : public ::testing::Test {
 protected:
  AppModelTest() { writeBytes(hostsPath, kPlainHosts); }

  /// A model over the folders, as the program builds one at launch; every state it publishes
  /// is kept in `published`.
  [[nodiscard]] std::unique_ptr<AppModel> makeModel() { return makeModel(composition()); }

  /// A model of these parts; every state it publishes is kept in `published`.
  [[nodiscard]] std::unique_ptr<AppModel> makeModel(AppModel::Composition parts) {
    std::unique_ptr<AppModel> model = AppModel::compose(std::move(parts));
    model->setOnChange([this](const AppModelState& state) { published.push_back(state); });
    return model;
  }

  /// What the program composes a model of, here the fixture's stand-ins.
  [[nodiscard]] AppModel::Composition composition() const {
    return AppModel::Composition{
        .folders = folders,
        .hostsPath = hostsPath,
        .runner = runner,
        .scheduler = scheduler,
        .clock = clock,
        .calendar = calendar,
    };
  }

  /// A model after its start-up pass, as the main window shows it.
  [[nodiscard]] std::unique_ptr<AppModel> makeRecoveredModel() {
    std::unique_ptr<AppModel> model = makeModel();
    model->recover();
    return model;
  }

  [[nodiscard]] LocalStore local() const { return LocalStore(folders.stateFile()); }
  [[nodiscard]] PersistedState stored() const { return local().load(); }
  void store(const PersistedState& state) const { local().save(state); }

  /// A document holding these tasks beside the initial groups.
  void storeTasks(const std::vector<FocusTask>& tasks) const {
    PersistedState state = PersistedState::initial();
    state.tasks = tasks;
    store(state);
  }

  [[nodiscard]] std::optional<FocusTask> storedTask(const Uuid& id) const {
    for (const FocusTask& task : stored().tasks) {
      if (task.id == id) return task;
    }
    return std::nullopt;
  }

  [[nodiscard]] std::vector<std::string> auditActions() const {
    std::vector<std::string> actions;
    for (const TaskAuditEvent& event : stored().auditEvents) actions.push_back(event.action);
    return actions;
  }

  /// How many times the alert text changed to a new, present text across the published states.
  [[nodiscard]] int alertsShown() const {
    int alerts = 0;
    std::optional<std::string> previous;
    for (const AppModelState& state : published) {
      if (state.editorError && state.editorError != previous) ++alerts;
      previous = state.editorError;
    }
    return alerts;
  }

  [[nodiscard]] bool hostsBlock(const DomainGroup& group) const {
    HostsBlockingEngine probe(hostsPath, folder / "probe", runner);
    return probe.status(hostsOf(group)) == BlockingStatus::active;
  }
  [[nodiscard]] bool hostsFileIsPlain() const { return readBytes(hostsPath) == kPlainHosts; }

  TempDir folder;
  PlatformFolders folders{.applicationSupport = folder / "Application Support",
                          .documents = folder / "Documents"};
  std::filesystem::path hostsPath = folder / "hosts";
  std::shared_ptr<FakePrivilegedRunner> runner = std::make_shared<FakePrivilegedRunner>();
  std::shared_ptr<RecordingReminderScheduler> scheduler =
      std::make_shared<RecordingReminderScheduler>();
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  Calendar calendar{"UTC", Calendar::kMonday, "en_US"};
  std::vector<AppModelState> published;
};

}  // namespace brindlet::testing

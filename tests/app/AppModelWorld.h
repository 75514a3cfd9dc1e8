#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FakePrivilegedRunner.h"
#include "FaultyFileService.h"
#include "ManualClock.h"
#include "RecordingReminderScheduler.h"
#include "TempDir.h"
#include "app/AppModel.h"
#include "app/PlatformFolders.h"
#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "support/Calendar.h"

namespace brindlet::testing {

/// The hosts file every world starts with: no block.
extern const std::string kWorldPlainHosts;

/// Everything one application model touches, in its own temporary folder (or in a given one),
/// with every file call of the model going through one file service that a test can make fail.
class AppModelWorld {
 public:
  explicit AppModelWorld(
      std::shared_ptr<const FileService> files = std::make_shared<FaultyFileService>());
  /// A world whose files live under `root`, which the caller owns.
  AppModelWorld(const std::filesystem::path& root, std::shared_ptr<const FileService> files);

  /// Builds the model over the folders and runs its start-up pass, as a launch does.
  AppModel& launch();
  /// Builds the model over the folders, which may move an old state file to the current
  /// schema, without the start-up pass: what the program has before its window comes up.
  AppModel& compose();
  /// Drops the model and launches a new one over the same folders and services.
  AppModel& relaunch() { return launch(); }
  [[nodiscard]] AppModel& model() const { return *model_; }

  [[nodiscard]] LocalStore local() const { return LocalStore(folders.stateFile()); }
  [[nodiscard]] PersistedState stored() const { return local().load(); }
  /// Saves through the world's file service.
  void store(const PersistedState& state) const {
    LocalStore(folders.stateFile(), files).save(state);
  }
  [[nodiscard]] std::string hostsText() const;

  std::optional<TempDir> ownFolder;
  std::filesystem::path root;
  PlatformFolders folders;
  std::filesystem::path hostsPath;
  /// Swaps the hosts file as the real runners do, through a file service of its own: the
  /// privileged side is not where the sweeps inject faults.
  std::shared_ptr<FakePrivilegedRunner> runner = std::make_shared<FakePrivilegedRunner>();
  std::shared_ptr<RecordingReminderScheduler> scheduler =
      std::make_shared<RecordingReminderScheduler>();
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  Calendar calendar{"UTC", Calendar::kMonday, "en_US"};
  std::shared_ptr<const FileService> files;

 private:
  std::unique_ptr<AppModel> model_;
};

/// What a user would call "the plan" in a document, as comparable text: every record in file
/// form, with random identifiers blanked so two runs of the same steps compare equal.
[[nodiscard]] std::string planText(const PersistedState& state);
/// The plan without its history: revision, audit trail, the tasks' times of last change and the
/// session's need of attention left out, so a change that was undone compares equal to never
/// having happened.
[[nodiscard]] std::string planWithoutHistory(PersistedState state);

/// The problems with the files of a world, one line each; empty when all is well: a state file
/// that doesn't load, a revision that isn't the audit trail's length, more than one active
/// task, a recovery copy or daily backup that isn't a whole document, a hosts block that isn't
/// the running session's.
///
/// Files already found whole in `knownWhole` are not read again, and those found whole now are
/// added: writers replace files and never change one in place, so a whole copy stays whole.
[[nodiscard]] std::vector<std::string> problemsWithFilesOf(
    const AppModelWorld& world, std::set<std::filesystem::path>* knownWhole = nullptr);

}  // namespace brindlet::testing

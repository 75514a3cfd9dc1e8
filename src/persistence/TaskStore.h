#pragma once

#include <memory>
#include <optional>

#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "persistence/TaskStoreSnapshot.h"
#include "support/Files.h"

namespace brindlet {

/// The owner of the plan: hands out snapshots of the state file. Called from one thread only.
class TaskStore {
 public:
  /// Reads the document; a file that can't be loaded fails the construction.
  explicit TaskStore(LocalStore store);
  /// Keeps `recoveryState` until the file can be read again, without touching the file.
  TaskStore(LocalStore store, PersistedState recoveryState);

  [[nodiscard]] const LocalStore& store() const { return store_; }

  /// The document as the file holds it now, or the last good one when the file can't be read.
  [[nodiscard]] TaskStoreSnapshot snapshot();

 private:
  void remember(LoadedState loaded);

  LocalStore store_;
  std::shared_ptr<const PersistedState> state_;
  // The file version `state_` was read from; while the file keeps it, `state_` is current.
  std::optional<FileIdentity> identity_;
};

}  // namespace brindlet

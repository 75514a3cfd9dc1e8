#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "persistence/TaskStoreError.h"
#include "persistence/TaskStoreSnapshot.h"
#include "records/TaskAuditEvent.h"
#include "support/Files.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// The owner of the plan: hands out snapshots of the state file and takes every change of it as
/// a transaction against a revision. Called from one thread only.
class TaskStore {
 public:
  /// Alters the document it is given; it may throw to refuse the change.
  using Change = std::function<void(PersistedState&)>;

  /// Reads the document; a file that can't be loaded fails the construction.
  explicit TaskStore(LocalStore store);
  /// Keeps `recoveryState` until the file can be read again, without touching the file.
  TaskStore(LocalStore store, PersistedState recoveryState);

  [[nodiscard]] const LocalStore& store() const { return store_; }

  /// The document as the file holds it now, or the last good one when the file can't be read.
  [[nodiscard]] TaskStoreSnapshot snapshot();

  /// Applies `change` to the document of revision `expectedRevision` and commits it as the next
  /// revision, with one audit event and one write of the file; gives the committed document.
  /// Fails with TaskStoreError when the file holds another revision, with the failure of the
  /// load, the change, task validation or the save otherwise, and then nothing is committed.
  TaskStoreSnapshot transact(std::int64_t expectedRevision, MutationSource source,
                             std::string_view action, std::optional<Uuid> taskID, Instant now,
                             const Change& change);

 private:
  void remember(SharedLoadedState loaded);
  // Brings `state_` up to the file, which must be readable; call it only under the lock.
  void refreshFromFile();

  LocalStore store_;
  std::shared_ptr<const PersistedState> state_;
  // The file version `state_` was read from; while the file keeps it, `state_` is current.
  std::optional<FileIdentity> identity_;
};

}  // namespace brindlet

#include "persistence/TaskStore.h"

#include <cstdlib>
#include <limits>

namespace brindlet {

TaskStore::TaskStore(LocalStore store) : store_(std::move(store)) { remember(store_.loadShared()); }

TaskStore::TaskStore(LocalStore store, PersistedState recoveryState)
    : store_(std::move(store)),
      state_(std::make_shared<const PersistedState>(std::move(recoveryState))) {}

void TaskStore::remember(SharedLoadedState loaded) {
  state_ = std::move(loaded.state);
  identity_ = loaded.identity;
}

TaskStoreSnapshot TaskStore::snapshot() {
  try {
    const std::optional<FileIdentity> current = fileIdentity(store_.url());
    if (!current || current != identity_) remember(store_.loadShared());
  } catch (...) {
    // A file that can't be read leaves the last good document in place; the read runs every
    // second, so the next one tries again.
  }
  return TaskStoreSnapshot(state_);
}

void TaskStore::refreshFromFile() {
  std::optional<FileIdentity> current;
  try {
    current = fileIdentity(store_.url());
  } catch (...) {
    // Whatever keeps the file from being looked at also fails the load, which reports it.
  }
  if (current && current == identity_) return;
  remember(store_.loadShared());
}

TaskStoreSnapshot TaskStore::transact(std::int64_t expectedRevision, MutationSource source,
                                      std::string_view action, std::optional<Uuid> taskID,
                                      Instant now, const Change& change) {
  return store_.withExclusiveLock([&] {
    // Even a refused transaction leaves the store on the file's latest document.
    refreshFromFile();
    if (expectedRevision != state_->revision) {
      throw TaskStoreError::revisionConflict(expectedRevision, state_->revision);
    }
    PersistedState next = *state_;
    change(next);
    for (const FocusTask& task : next.tasks) task.validate();
    if (next.revision == std::numeric_limits<std::int64_t>::max()) std::abort();
    ++next.revision;
    next.auditEvents.push_back(TaskAuditEvent{.id = Uuid::random(),
                                              .timestamp = now,
                                              .source = source,
                                              .action = std::string(action),
                                              .taskID = taskID});
    store_.save(next);
    state_ = std::make_shared<const PersistedState>(std::move(next));
    // The lock keeps other writers out, so the file is still the one just written. The commit
    // has happened: a failure to look at it only costs the next snapshot a fresh read.
    try {
      identity_ = fileIdentity(store_.url());
    } catch (...) {
      identity_.reset();
    }
    return TaskStoreSnapshot(state_);
  });
}

}  // namespace brindlet

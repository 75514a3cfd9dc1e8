#include "persistence/TaskStore.h"

namespace brindlet {

TaskStore::TaskStore(LocalStore store) : store_(std::move(store)) {
  remember(store_.loadWithIdentity());
}

TaskStore::TaskStore(LocalStore store, PersistedState recoveryState)
    : store_(std::move(store)),
      state_(std::make_shared<const PersistedState>(std::move(recoveryState))) {}

void TaskStore::remember(LoadedState loaded) {
  state_ = std::make_shared<const PersistedState>(std::move(loaded.state));
  identity_ = loaded.identity;
}

TaskStoreSnapshot TaskStore::snapshot() {
  try {
    const std::optional<FileIdentity> current = fileIdentity(store_.url());
    if (!current || current != identity_) remember(store_.loadWithIdentity());
  } catch (...) {
    // A file that can't be read leaves the last good document in place; the read runs every
    // second, so the next one tries again.
  }
  return TaskStoreSnapshot(state_);
}

}  // namespace brindlet

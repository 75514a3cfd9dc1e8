#pragma once

#include <cstdint>
#include <memory>

#include "persistence/PersistedState.h"

namespace brindlet {

/// A revision and a whole, immutable copy of the document, shared cheaply between holders.
/// Holding one holds no lock and nothing of the store.
class TaskStoreSnapshot {
 public:
  /// Takes the revision out of the document.
  explicit TaskStoreSnapshot(std::shared_ptr<const PersistedState> state);
  explicit TaskStoreSnapshot(PersistedState state);

  [[nodiscard]] std::int64_t revision() const { return revision_; }
  [[nodiscard]] const PersistedState& state() const { return *state_; }
  [[nodiscard]] const std::shared_ptr<const PersistedState>& sharedState() const { return state_; }

  friend bool operator==(const TaskStoreSnapshot& a, const TaskStoreSnapshot& b) {
    return a.revision_ == b.revision_ && (a.state_ == b.state_ || *a.state_ == *b.state_);
  }

 private:
  std::int64_t revision_;
  std::shared_ptr<const PersistedState> state_;
};

}  // namespace brindlet

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// Everything that changed among the paired devices after a cursor.
struct PairingChangeBatch {
  /// Sorted by id, in text order.
  std::vector<PairedDevice> devices;
  /// Sorted by session id text.
  std::vector<SyncedSessionIntent> intents;
  /// Sorted by id.
  std::vector<EnforcementAcknowledgement> acknowledgements;
  /// The cloud record ids ("device:...", "session:...", "ack:...") that were deleted, sorted.
  std::vector<std::string> deletedRecordIDs;
  /// Where the next fetch starts; opaque bytes.
  std::optional<std::string> cursor;

  friend bool operator==(const PairingChangeBatch&, const PairingChangeBatch&) = default;
};

}  // namespace brindlet

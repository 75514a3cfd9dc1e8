#pragma once

#include <optional>
#include <string>

#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/PairingChangeBatch.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// The way to the other devices. Each operation may block on the network and may fail.
class PairingTransport {
 public:
  virtual ~PairingTransport() = default;

  /// Makes a device known to the others.
  virtual void publish(const PairedDevice& device) = 0;
  /// Makes a version of a session's intent known to the others.
  virtual void publish(const SyncedSessionIntent& intent) = 0;
  /// Makes a device's answer to an intent known to the others.
  virtual void publish(const EnforcementAcknowledgement& acknowledgement) = 0;
  /// All changes after `cursor`, opaque bytes; from the beginning when it is absent.
  [[nodiscard]] virtual PairingChangeBatch fetchChanges(
      const std::optional<std::string>& cursor) = 0;
};

}  // namespace brindlet

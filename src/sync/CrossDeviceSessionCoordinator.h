#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/Instant.h"
#include "support/Uuid.h"
#include "sync/CrossDeviceCoordinatorSnapshot.h"
#include "sync/DeviceProtectionStatus.h"
#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/PairingChangeBatch.h"
#include "sync/PairingTransport.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// What this device knows of its partners, the sessions' intents and the partners' answers,
/// and how protected each partner keeps a session. The Mac publishes intents and reads
/// protection; an enforcing device takes the intents and acknowledges them. Used from one
/// thread; the transport calls are where it may block.
class CrossDeviceSessionCoordinator {
 public:
  /// Starts from a snapshot taken earlier, or empty. A snapshot must hold one record per key:
  /// snapshot() never makes another kind, and a hand-made one that does stops the process.
  CrossDeviceSessionCoordinator(std::shared_ptr<PairingTransport> transport,
                                std::string localDeviceID,
                                const CrossDeviceCoordinatorSnapshot& snapshot = {});

  [[nodiscard]] const std::string& localDeviceID() const { return localDeviceID_; }

  /// Takes this device's own version of an intent and publishes the intent that then stands,
  /// which need not be the argument. The local state changes before the transport is called,
  /// so a failed publish leaves the resolved intent held here; the transport's error comes out.
  void publish(const SyncedSessionIntent& intent, Instant now);

  /// Resolves a version of an intent against the one held for its session and keeps the result.
  /// Returns the intent that now stands.
  SyncedSessionIntent receive(const SyncedSessionIntent& intent, Instant now);
  /// Keeps a device's announcement unless a later one is held; equal times replace.
  void receive(const PairedDevice& device);
  /// Keeps an answer unless the one held answers a higher revision, or the same revision later.
  void receive(const EnforcementAcknowledgement& acknowledgement);

  /// This device's answer to the intent: kept here first, then published. Returns the answer;
  /// a transport failure comes out after it is kept, and the caller may publish again.
  EnforcementAcknowledgement acknowledge(const SyncedSessionIntent& intent,
                                         EnforcementResult result, Instant appliedAt,
                                         std::optional<std::string> errorCode = std::nullopt);

  /// How well `deviceID` protects the session now. An answer counts only for the intent's current
  /// revision, and only while the session runs. A silent device keeps its answer.
  [[nodiscard]] DeviceProtectionStatus protectionStatus(std::string_view deviceID,
                                                        const Uuid& sessionID, Instant now) const;

  /// Takes in a batch of changes. Only device deletions remove anything: a session ends by its
  /// state, never by the deletion of its record. The cursor stays as it is.
  void apply(const PairingChangeBatch& batch, Instant now);

  /// Fetches what changed after the cursor, takes it in, and moves the cursor to the batch's,
  /// even when that is absent, which makes the next fetch start from the beginning. A transport
  /// failure comes out with nothing changed.
  PairingChangeBatch refresh(Instant now);

  /// The state as sorted lists.
  [[nodiscard]] CrossDeviceCoordinatorSnapshot snapshot() const;

  /// The intent that stands for a session, if any is known.
  [[nodiscard]] std::optional<SyncedSessionIntent> intent(const Uuid& sessionID) const;

 private:
  std::shared_ptr<PairingTransport> transport_;
  std::string localDeviceID_;
  std::map<std::string, PairedDevice, std::less<>> devices_;
  // Uuid order is the order of its upper-case text, so this map is also sorted by text.
  std::map<Uuid, SyncedSessionIntent> intents_;
  std::map<std::string, EnforcementAcknowledgement, std::less<>> acknowledgements_;
  std::optional<std::string> cursor_;
};

}  // namespace brindlet

#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "support/Clock.h"
#include "sync/CloudCursorStoring.h"
#include "sync/CloudRecordDatabase.h"
#include "sync/PairingTransport.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// The way to the other devices through a record database in the user's own cloud account.
/// It sets up change subscriptions once, folds each reply into a batch, saves the cursor of each
/// reply it could read, and tracks how the connection stands. It never retries by itself: every
/// failure comes out to the caller after the state has followed it. Used from one thread.
class CloudKitPairingTransport final : public PairingTransport {
 public:
  CloudKitPairingTransport(std::shared_ptr<CloudRecordDatabase> database,
                           std::shared_ptr<CloudCursorStoring> cursorStore,
                           std::shared_ptr<const Clock> clock);

  /// How the connection stands: waitingForICloud until an operation succeeds, then as the last
  /// operation left it.
  [[nodiscard]] PairingState pairingState() const { return state_; }

  void publish(const PairedDevice& device) override;
  void publish(const SyncedSessionIntent& intent) override;
  void publish(const EnforcementAcknowledgement& acknowledgement) override;
  /// The changes after the caller's cursor; the reply's cursor is saved only when the whole
  /// reply could be read, so that an unreadable reply comes again.
  [[nodiscard]] PairingChangeBatch fetchChanges(const std::optional<std::string>& cursor) override;

 private:
  void ensureSubscriptions();
  void publishRecord(const CloudRecordEnvelope& record);
  void updateState(const std::exception_ptr& error);

  std::shared_ptr<CloudRecordDatabase> database_;
  std::shared_ptr<CloudCursorStoring> cursorStore_;
  std::shared_ptr<const Clock> clock_;
  bool subscriptionsReady_ = false;
  PairingState state_ = PairingState::waitingForICloud;
};

}  // namespace brindlet

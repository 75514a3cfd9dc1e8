#pragma once

#include <deque>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "sync/PairingTransport.h"

namespace brindlet::testing {

/// A pairing transport that records what is published and hands out batches queued by the
/// test; either side can be told to fail.
class RecordingPairingTransport final : public PairingTransport {
 public:
  std::vector<PairedDevice> publishedDevices;
  std::vector<SyncedSessionIntent> publishedIntents;
  std::vector<EnforcementAcknowledgement> publishedAcknowledgements;
  /// The cursor of each fetch, in order.
  std::vector<std::optional<std::string>> fetchCursors;
  /// Handed out one per fetch; an empty batch when none is left.
  std::deque<PairingChangeBatch> batches;
  /// Thrown by every publish while set.
  std::exception_ptr publishFailure;
  /// Thrown by every fetch while set.
  std::exception_ptr fetchFailure;

  void publish(const PairedDevice& device) override {
    if (publishFailure) std::rethrow_exception(publishFailure);
    publishedDevices.push_back(device);
  }
  void publish(const SyncedSessionIntent& intent) override {
    if (publishFailure) std::rethrow_exception(publishFailure);
    publishedIntents.push_back(intent);
  }
  void publish(const EnforcementAcknowledgement& acknowledgement) override {
    if (publishFailure) std::rethrow_exception(publishFailure);
    publishedAcknowledgements.push_back(acknowledgement);
  }
  PairingChangeBatch fetchChanges(const std::optional<std::string>& cursor) override {
    fetchCursors.push_back(cursor);
    if (fetchFailure) std::rethrow_exception(fetchFailure);
    if (batches.empty()) return {};
    PairingChangeBatch batch = std::move(batches.front());
    batches.pop_front();
    return batch;
  }
};

}  // namespace brindlet::testing

#include "sync/CrossDeviceSessionCoordinator.h"

#include <cstdlib>
#include <utility>

#include "sync/SessionIntentReducer.h"

namespace brindlet {
namespace {

constexpr std::string_view kDeviceRecordPrefix = "device:";

template <typename Map, typename Key, typename Value>
void insertUnique(Map& map, Key key, const Value& value) {
  // Two records under one key can't come from snapshot(); a hand-made snapshot that has them
  // is a programming fault.
  if (!map.emplace(std::move(key), value).second) std::abort();
}

}  // namespace

CrossDeviceSessionCoordinator::CrossDeviceSessionCoordinator(
    std::shared_ptr<PairingTransport> transport, std::string localDeviceID,
    const CrossDeviceCoordinatorSnapshot& snapshot)
    : transport_(std::move(transport)),
      localDeviceID_(std::move(localDeviceID)),
      cursor_(snapshot.cursor) {
  for (const PairedDevice& device : snapshot.devices) insertUnique(devices_, device.id, device);
  for (const SyncedSessionIntent& intent : snapshot.intents) {
    insertUnique(intents_, intent.sessionID, intent);
  }
  for (const EnforcementAcknowledgement& acknowledgement : snapshot.acknowledgements) {
    insertUnique(acknowledgements_, acknowledgement.id(), acknowledgement);
  }
}

void CrossDeviceSessionCoordinator::publish(const SyncedSessionIntent& intent, Instant now) {
  const SyncedSessionIntent standing = receive(intent, now);
  transport_->publish(standing);
}

SyncedSessionIntent CrossDeviceSessionCoordinator::receive(const SyncedSessionIntent& intent,
                                                           Instant now) {
  std::optional<SyncedSessionIntent> local;
  if (const auto found = intents_.find(intent.sessionID); found != intents_.end()) {
    local = found->second;
  }
  SyncedSessionIntent standing = SessionIntentReducer::resolve(local, intent, now);
  intents_.insert_or_assign(intent.sessionID, standing);
  return standing;
}

void CrossDeviceSessionCoordinator::receive(const PairedDevice& device) {
  if (const auto found = devices_.find(device.id);
      found != devices_.end() && found->second.lastSeenAt > device.lastSeenAt) {
    return;
  }
  devices_.insert_or_assign(device.id, device);
}

void CrossDeviceSessionCoordinator::receive(const EnforcementAcknowledgement& acknowledgement) {
  std::string id = acknowledgement.id();
  if (const auto found = acknowledgements_.find(id); found != acknowledgements_.end()) {
    const EnforcementAcknowledgement& known = found->second;
    if (acknowledgement.appliedRevision < known.appliedRevision) return;
    if (acknowledgement.appliedRevision == known.appliedRevision &&
        known.appliedAt > acknowledgement.appliedAt) {
      return;
    }
  }
  acknowledgements_.insert_or_assign(std::move(id), acknowledgement);
}

EnforcementAcknowledgement CrossDeviceSessionCoordinator::acknowledge(
    const SyncedSessionIntent& intent, EnforcementResult result, Instant appliedAt,
    std::optional<std::string> errorCode) {
  const EnforcementAcknowledgement acknowledgement{.sessionID = intent.sessionID,
                                                   .deviceID = localDeviceID_,
                                                   .appliedRevision = intent.revision,
                                                   .appliedAt = appliedAt,
                                                   .result = result,
                                                   .errorCode = std::move(errorCode)};
  receive(acknowledgement);
  transport_->publish(acknowledgement);
  return acknowledgement;
}

DeviceProtectionStatus CrossDeviceSessionCoordinator::protectionStatus(std::string_view deviceID,
                                                                       const Uuid& sessionID,
                                                                       Instant now) const {
  using Case = DeviceProtectionStatus::Case;
  if (!devices_.contains(deviceID)) return DeviceProtectionStatus::of(Case::notPaired);
  const auto intent = intents_.find(sessionID);
  if (intent == intents_.end()) return DeviceProtectionStatus::of(Case::waitingForIPhone);
  const SyncedSessionIntent& current = intent->second;
  if (current.state != SyncedSessionState::active || now >= current.endsAt) {
    return DeviceProtectionStatus::of(Case::expired);
  }
  const auto answer =
      acknowledgements_.find(sessionID.uppercaseText() + ":" + std::string(deviceID));
  if (answer == acknowledgements_.end()) return DeviceProtectionStatus::of(Case::waitingForIPhone);
  const EnforcementAcknowledgement& acknowledgement = answer->second;
  // An answer to an older version says nothing about the current one.
  if (acknowledgement.appliedRevision < current.revision) {
    return DeviceProtectionStatus::of(Case::waitingForIPhone);
  }
  switch (acknowledgement.result) {
    case EnforcementResult::applied:
      return DeviceProtectionStatus::protectedUntil(current.endsAt);
    case EnforcementResult::authorizationRequired:
      return DeviceProtectionStatus::of(Case::authorizationRequired);
    case EnforcementResult::profileMissing:
      return DeviceProtectionStatus::of(Case::profileMissing);
    case EnforcementResult::entitlementMissing:
      return DeviceProtectionStatus::of(Case::entitlementMissing);
    case EnforcementResult::failed:
      return DeviceProtectionStatus::failed(acknowledgement.errorCode);
  }
  return DeviceProtectionStatus::failed(acknowledgement.errorCode);
}

void CrossDeviceSessionCoordinator::apply(const PairingChangeBatch& batch, Instant now) {
  for (const PairedDevice& device : batch.devices) receive(device);
  for (const SyncedSessionIntent& intent : batch.intents) (void)receive(intent, now);
  for (const EnforcementAcknowledgement& acknowledgement : batch.acknowledgements) {
    receive(acknowledgement);
  }
  for (const std::string& recordID : batch.deletedRecordIDs) {
    if (recordID.starts_with(kDeviceRecordPrefix)) {
      devices_.erase(recordID.substr(kDeviceRecordPrefix.size()));
    }
  }
}

PairingChangeBatch CrossDeviceSessionCoordinator::refresh(Instant now) {
  PairingChangeBatch batch = transport_->fetchChanges(cursor_);
  apply(batch, now);
  cursor_ = batch.cursor;
  return batch;
}

CrossDeviceCoordinatorSnapshot CrossDeviceSessionCoordinator::snapshot() const {
  CrossDeviceCoordinatorSnapshot result;
  result.devices.reserve(devices_.size());
  for (const auto& [id, device] : devices_) result.devices.push_back(device);
  result.intents.reserve(intents_.size());
  for (const auto& [id, intent] : intents_) result.intents.push_back(intent);
  result.acknowledgements.reserve(acknowledgements_.size());
  for (const auto& [id, acknowledgement] : acknowledgements_) {
    result.acknowledgements.push_back(acknowledgement);
  }
  result.cursor = cursor_;
  return result;
}

std::optional<SyncedSessionIntent> CrossDeviceSessionCoordinator::intent(
    const Uuid& sessionID) const {
  if (const auto found = intents_.find(sessionID); found != intents_.end()) return found->second;
  return std::nullopt;
}

}  // namespace brindlet

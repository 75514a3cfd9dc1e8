#include "sync/CloudKitPairingTransport.h"

#include <algorithm>
#include <map>

#include "sync/CloudKitRecordMapper.h"
#include "sync/CloudPairingTransportError.h"
#include "sync/SyncModelError.h"

namespace brindlet {
namespace {

// Folds a reply into a batch, keeping the newest version of each record: a reply may hold
// several changes of one record in any order. A record that can't be read fails the whole reply.
PairingChangeBatch map(const CloudDatabaseChangeBatch& reply) {
  std::map<std::string, PairedDevice> devices;
  std::map<Uuid, SyncedSessionIntent> intents;
  std::map<std::string, EnforcementAcknowledgement> acknowledgements;
  PairingChangeBatch batch;
  for (const CloudRecordEnvelope& record : reply.records) {
    if (record.isDeleted) {
      batch.deletedRecordIDs.push_back(record.recordID);
    } else if (record.recordType == CloudKitRecordMapper::deviceRecordType) {
      PairedDevice device = CloudKitRecordMapper::device(record);
      const auto known = devices.find(device.id);
      if (known == devices.end()) {
        devices.emplace(device.id, std::move(device));
      } else if (known->second.lastSeenAt < device.lastSeenAt) {
        known->second = std::move(device);
      }
    } else if (record.recordType == CloudKitRecordMapper::intentRecordType) {
      SyncedSessionIntent intent = CloudKitRecordMapper::intent(record);
      const auto known = intents.find(intent.sessionID);
      if (known == intents.end()) {
        intents.emplace(intent.sessionID, std::move(intent));
      } else if (known->second.revision < intent.revision) {
        known->second = std::move(intent);
      }
    } else if (record.recordType == CloudKitRecordMapper::acknowledgementRecordType) {
      EnforcementAcknowledgement acknowledgement = CloudKitRecordMapper::acknowledgement(record);
      std::string id = acknowledgement.id();
      const auto known = acknowledgements.find(id);
      if (known == acknowledgements.end()) {
        acknowledgements.emplace(std::move(id), std::move(acknowledgement));
      } else if (known->second.appliedRevision < acknowledgement.appliedRevision) {
        known->second = std::move(acknowledgement);
      }
    }
    // Other record types are left for later versions to define.
  }
  // The maps are ordered by the keys the batch is sorted by; a UUID's order is that of its text.
  for (auto& [id, device] : devices) batch.devices.push_back(std::move(device));
  for (auto& [id, intent] : intents) batch.intents.push_back(std::move(intent));
  for (auto& [id, acknowledgement] : acknowledgements) {
    batch.acknowledgements.push_back(std::move(acknowledgement));
  }
  std::sort(batch.deletedRecordIDs.begin(), batch.deletedRecordIDs.end());
  batch.cursor = reply.cursor;
  return batch;
}

}  // namespace

CloudKitPairingTransport::CloudKitPairingTransport(std::shared_ptr<CloudRecordDatabase> database,
                                                   std::shared_ptr<CloudCursorStoring> cursorStore,
                                                   std::shared_ptr<const Clock> clock)
    : database_(std::move(database)),
      cursorStore_(std::move(cursorStore)),
      clock_(std::move(clock)) {}

void CloudKitPairingTransport::publish(const PairedDevice& device) {
  publishRecord(CloudKitRecordMapper::record(device, clock_->now()));
}

void CloudKitPairingTransport::publish(const SyncedSessionIntent& intent) {
  publishRecord(CloudKitRecordMapper::record(intent, clock_->now()));
}

void CloudKitPairingTransport::publish(const EnforcementAcknowledgement& acknowledgement) {
  publishRecord(CloudKitRecordMapper::record(acknowledgement, clock_->now()));
}

PairingChangeBatch CloudKitPairingTransport::fetchChanges(
    const std::optional<std::string>& cursor) {
  PairingChangeBatch batch;
  try {
    ensureSubscriptions();
    const CloudDatabaseChangeBatch reply = database_->fetchChanges(cursor);
    batch = map(reply);
  } catch (...) {
    updateState(std::current_exception());
    throw;
  }
  cursorStore_->save(batch.cursor);
  state_ = PairingState::paired;
  return batch;
}

void CloudKitPairingTransport::ensureSubscriptions() {
  if (subscriptionsReady_) return;
  database_->ensureSubscriptions(CloudKitRecordMapper::recordTypes());
  subscriptionsReady_ = true;
}

void CloudKitPairingTransport::publishRecord(const CloudRecordEnvelope& record) {
  try {
    ensureSubscriptions();
    database_->save(record);
  } catch (...) {
    updateState(std::current_exception());
    throw;
  }
  state_ = PairingState::paired;
}

void CloudKitPairingTransport::updateState(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const SyncModelError& modelError) {
    // A corrupt record says nothing about the connection.
    if (modelError.which() == SyncModelError::Case::unsupportedSchemaVersion) {
      state_ = PairingState::schemaUnsupported;
    }
  } catch (const CloudPairingTransportError& transportError) {
    switch (transportError.which()) {
      case CloudPairingTransportError::Case::waitingForICloud:
        state_ = PairingState::waitingForICloud;
        break;
      case CloudPairingTransportError::Case::permissionDenied:
        state_ = PairingState::permissionDenied;
        break;
      case CloudPairingTransportError::Case::offline:
      case CloudPairingTransportError::Case::databaseFailure:
        state_ = PairingState::offline;
        break;
    }
  } catch (...) {
    state_ = PairingState::offline;
  }
}

}  // namespace brindlet

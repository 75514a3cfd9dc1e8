#include "InMemoryCloudRecordDatabase.h"

#include <charconv>

namespace brindlet::testing {

void InMemoryCloudRecordDatabase::ensureSubscriptions(const std::set<std::string>& recordTypes) {
  ++ensureSubscriptionsCount;
  failIfTold(Operation::ensureSubscriptions);
  subscribedTypes.insert(recordTypes.begin(), recordTypes.end());
}

void InMemoryCloudRecordDatabase::save(const CloudRecordEnvelope& record) {
  ++saveCount;
  failIfTold(Operation::save);
  latest_.insert_or_assign(record.recordID, changes_.size());
  changes_.push_back(record);
}

CloudDatabaseChangeBatch InMemoryCloudRecordDatabase::fetchChanges(
    const std::optional<std::string>& cursor) {
  ++fetchCount;
  failIfTold(Operation::fetchChanges);
  std::size_t from = 0;
  if (cursor) {
    const char* end = cursor->data() + cursor->size();
    const auto [stop, error] = std::from_chars(cursor->data(), end, from);
    if (error != std::errc() || stop != end || from > changes_.size()) {
      throw CloudPairingTransportError::databaseFailure("Unknown change cursor.");
    }
  }
  CloudDatabaseChangeBatch reply;
  for (std::size_t index = from; index < changes_.size(); ++index) {
    const CloudRecordEnvelope& change = changes_[index];
    if (givesEveryVersion || latest_.at(change.recordID) == index) reply.records.push_back(change);
  }
  reply.cursor = currentCursor();
  return reply;
}

void InMemoryCloudRecordDatabase::failWith(Operation operation,
                                           const CloudPairingTransportError& error) {
  failures_.insert_or_assign(operation, error);
}

void InMemoryCloudRecordDatabase::stopFailing(Operation operation) { failures_.erase(operation); }

void InMemoryCloudRecordDatabase::remove(const std::string& recordID, Instant at) {
  const auto found = latest_.find(recordID);
  const std::string recordType = found == latest_.end() ? "" : changes_[found->second].recordType;
  latest_.insert_or_assign(recordID, changes_.size());
  changes_.push_back({.recordType = recordType,
                      .recordID = recordID,
                      .payload = {},
                      .updatedAt = at,
                      .isDeleted = true});
}

std::optional<CloudRecordEnvelope> InMemoryCloudRecordDatabase::record(
    const std::string& recordID) const {
  const auto found = latest_.find(recordID);
  if (found == latest_.end() || changes_[found->second].isDeleted) return std::nullopt;
  return changes_[found->second];
}

std::string InMemoryCloudRecordDatabase::currentCursor() const {
  return std::to_string(changes_.size());
}

void InMemoryCloudRecordDatabase::failIfTold(Operation operation) const {
  if (const auto failure = failures_.find(operation); failure != failures_.end()) {
    throw failure->second;
  }
}

}  // namespace brindlet::testing

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sync/CloudPairingTransportError.h"
#include "sync/CloudRecordDatabase.h"

namespace brindlet::testing {

/// A cloud record database held in memory. Every save and deletion is one change in a log;
/// a cursor is the number of changes seen. A fetch gives the records changed after the cursor,
/// from the beginning when it is absent, each at its latest version (or every version, when
/// asked), with deletions as tombstones. The last writer wins per record id. Repeated
/// subscription setup is harmless. Each operation can be told to fail.
class InMemoryCloudRecordDatabase final : public CloudRecordDatabase {
 public:
  enum class Operation { ensureSubscriptions, save, fetchChanges };

  void ensureSubscriptions(const std::set<std::string>& recordTypes) override;
  void save(const CloudRecordEnvelope& record) override;
  [[nodiscard]] CloudDatabaseChangeBatch fetchChanges(
      const std::optional<std::string>& cursor) override;

  /// Makes every later call of `operation` fail with `error`, until stopFailing.
  void failWith(Operation operation, const CloudPairingTransportError& error);
  void stopFailing(Operation operation);
  /// Deletes a record as another device would; fetches then give its tombstone.
  void remove(const std::string& recordID, Instant at);

  /// The record as it stands now; absent when it was never saved or was deleted.
  [[nodiscard]] std::optional<CloudRecordEnvelope> record(const std::string& recordID) const;
  /// Every change in the order made.
  [[nodiscard]] const std::vector<CloudRecordEnvelope>& changes() const { return changes_; }
  /// The cursor a fetch would give now.
  [[nodiscard]] std::string currentCursor() const;

  /// When set, a fetch gives every version of a record changed after the cursor, not only the
  /// latest, as a real store may.
  bool givesEveryVersion = false;
  std::set<std::string> subscribedTypes;
  int ensureSubscriptionsCount = 0;
  int saveCount = 0;
  int fetchCount = 0;

 private:
  void failIfTold(Operation operation) const;

  std::vector<CloudRecordEnvelope> changes_;
  std::map<std::string, std::size_t> latest_;
  std::map<Operation, CloudPairingTransportError> failures_;
};

}  // namespace brindlet::testing

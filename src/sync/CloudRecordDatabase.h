#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sync/CloudRecordEnvelope.h"

namespace brindlet {

/// One reply of the cloud record database.
struct CloudDatabaseChangeBatch {
  std::vector<CloudRecordEnvelope> records;
  /// Where the next fetch starts; opaque bytes.
  std::optional<std::string> cursor;

  friend bool operator==(const CloudDatabaseChangeBatch&,
                         const CloudDatabaseChangeBatch&) = default;
};

/// What pairing needs of a record store in the user's own cloud account. Each operation may
/// block on the network, and fails preferably with a CloudPairingTransportError.
class CloudRecordDatabase {
 public:
  virtual ~CloudRecordDatabase() = default;

  /// Makes sure that changes to records of these types can be fetched and that this device is
  /// told of them. Repeating it must be harmless.
  virtual void ensureSubscriptions(const std::set<std::string>& recordTypes) = 0;
  /// Creates or replaces the record named by its recordID; the last writer wins.
  virtual void save(const CloudRecordEnvelope& record) = 0;
  /// Every record of the account that changed after `cursor`, from the beginning when it is
  /// absent, with deletions as envelopes marked isDeleted, and a new cursor. A record's several
  /// changes may all be in the reply, in any order.
  [[nodiscard]] virtual CloudDatabaseChangeBatch fetchChanges(
      const std::optional<std::string>& cursor) = 0;
};

}  // namespace brindlet

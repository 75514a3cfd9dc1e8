#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// What a coordinator needs to pick up where it left off after a restart. Lists are sorted by
/// key, so equal state gives equal bytes.
struct CrossDeviceCoordinatorSnapshot {
  std::vector<PairedDevice> devices;
  std::vector<SyncedSessionIntent> intents;
  std::vector<EnforcementAcknowledgement> acknowledgements;
  /// Where the next fetch starts; base64 text in the JSON form, left out when absent.
  std::optional<std::string> cursor;

  friend bool operator==(const CrossDeviceCoordinatorSnapshot&,
                         const CrossDeviceCoordinatorSnapshot&) = default;
};

void toJson(JsonWriter& out, const CrossDeviceCoordinatorSnapshot& snapshot);
/// Reads the JSON form; the three lists must be there. Fails with DecodingError.
[[nodiscard]] CrossDeviceCoordinatorSnapshot crossDeviceCoordinatorSnapshotFromJson(
    const JsonNode& node);

}  // namespace brindlet

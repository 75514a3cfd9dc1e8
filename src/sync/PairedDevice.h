#pragma once

#include <cstdint>
#include <string>

#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// A device that takes part in pairing, as it last announced itself.
struct PairedDevice {
  std::int64_t schemaVersion = focusSyncSchemaVersion;
  /// The device's stable identifier; also its identity in lists.
  std::string id;
  std::string name;
  FocusDevicePlatform platform = FocusDevicePlatform::macOS;
  Instant lastSeenAt{};

  /// The name of the cloud record that carries this device: "device:{id}".
  [[nodiscard]] std::string recordID() const { return "device:" + id; }

  friend bool operator==(const PairedDevice&, const PairedDevice&) = default;
};

void toJson(JsonWriter& out, const PairedDevice& device);
[[nodiscard]] PairedDevice pairedDeviceFromJson(const JsonNode& node);

}  // namespace brindlet

#pragma once

#include <string>

#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// One record of the cloud record database: a sync record's JSON under its derived name.
struct CloudRecordEnvelope {
  /// "FocusDevice", "FocusSessionIntent" or "FocusEnforcementAck"; later versions may add more.
  std::string recordType;
  /// The derived id of the sync record, such as "session:{sessionID}".
  std::string recordID;
  /// The sync record's JSON; base64 text in the envelope's own JSON form.
  std::string payload;
  Instant updatedAt{};
  /// A tombstone: the record was deleted, and its payload means nothing.
  bool isDeleted = false;

  friend bool operator==(const CloudRecordEnvelope&, const CloudRecordEnvelope&) = default;
};

void toJson(JsonWriter& out, const CloudRecordEnvelope& envelope);
/// Reads the JSON form; every key must be there. Fails with DecodingError.
[[nodiscard]] CloudRecordEnvelope cloudRecordEnvelopeFromJson(const JsonNode& node);

}  // namespace brindlet

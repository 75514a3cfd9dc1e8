#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// A device's answer to one revision of a session's intent. A device has at most one standing
/// answer per session.
struct EnforcementAcknowledgement {
  std::int64_t schemaVersion = focusSyncSchemaVersion;
  Uuid sessionID{};
  /// The device that answers.
  std::string deviceID;
  /// The intent revision that this answers.
  std::int64_t appliedRevision = 0;
  Instant appliedAt{};
  EnforcementResult result = EnforcementResult::applied;
  /// A short code that goes with `failed`, shown to the user.
  std::optional<std::string> errorCode;

  /// The answer's identity in memory: "{sessionID}:{deviceID}", the session in upper case.
  [[nodiscard]] std::string id() const { return sessionID.uppercaseText() + ":" + deviceID; }
  /// The name of the cloud record that carries this answer: "ack:{sessionID}:{deviceID}", the
  /// session in lower case. It is a separate key from `id` and stays one.
  [[nodiscard]] std::string recordID() const {
    return "ack:" + sessionID.lowercaseText() + ":" + deviceID;
  }

  friend bool operator==(const EnforcementAcknowledgement&,
                         const EnforcementAcknowledgement&) = default;
};

void toJson(JsonWriter& out, const EnforcementAcknowledgement& acknowledgement);
[[nodiscard]] EnforcementAcknowledgement enforcementAcknowledgementFromJson(const JsonNode& node);

}  // namespace brindlet

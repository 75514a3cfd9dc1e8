#pragma once

#include <cstdint>
#include <string>

#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// One session's wish as this device last knows it: which profile to apply, how strictly and
/// until when. It names the session by id and times only.
struct SyncedSessionIntent {
  std::int64_t schemaVersion = focusSyncSchemaVersion;
  /// The session; also the record's identity.
  Uuid sessionID{};
  /// The restriction profile to apply, by id only.
  Uuid profileID{};
  SyncedSessionMode mode = SyncedSessionMode::flexible;
  Instant startedAt{};
  Instant endsAt{};
  /// Orders the versions of sessions; see SessionIntentRevision.
  std::int64_t revision = 0;
  SyncedSessionState state = SyncedSessionState::active;
  /// The device that wrote this version.
  std::string sourceDeviceID;

  /// The name of the cloud record that carries this intent: "session:{sessionID}", lower case.
  [[nodiscard]] std::string recordID() const { return "session:" + sessionID.lowercaseText(); }

  friend bool operator==(const SyncedSessionIntent&, const SyncedSessionIntent&) = default;
};

void toJson(JsonWriter& out, const SyncedSessionIntent& intent);
[[nodiscard]] SyncedSessionIntent syncedSessionIntentFromJson(const JsonNode& node);

}  // namespace brindlet

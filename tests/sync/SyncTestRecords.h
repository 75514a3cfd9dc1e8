#pragma once

#include <ostream>
#include <string>

#include "Builders.h"
#include "support/Instant.h"
#include "support/Uuid.h"
#include "sync/SessionIntentRevision.h"
#include "sync/SyncModelCodec.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

// Failure messages show sync records as their JSON.
inline void PrintTo(const SyncedSessionIntent& intent, std::ostream* out) {
  *out << SyncModelCodec::jsonBytes(intent);
}
inline void PrintTo(const EnforcementAcknowledgement& acknowledgement, std::ostream* out) {
  *out << SyncModelCodec::jsonBytes(acknowledgement);
}
inline void PrintTo(const PairedDevice& device, std::ostream* out) {
  *out << SyncModelCodec::jsonBytes(device);
}

}  // namespace brindlet

namespace brindlet::testing {

inline const Uuid kSyncProfile = Uuid::fromLiteral("F0C05B10-0000-4000-8000-000000000001");

/// An intent of a session that started at `startedAt` and ends `minutes` later, with the
/// revision the Mac gives that state.
inline SyncedSessionIntent makeIntent(const Uuid& sessionID, Instant startedAt, double minutes,
                                      SyncedSessionMode mode,
                                      SyncedSessionState state = SyncedSessionState::active,
                                      std::string source = "mac") {
  return {.sessionID = sessionID,
          .profileID = kSyncProfile,
          .mode = mode,
          .startedAt = startedAt,
          .endsAt = startedAt.advanced(minutes * 60),
          .revision = SessionIntentRevision::value(startedAt, state),
          .state = state,
          .sourceDeviceID = std::move(source)};
}

}  // namespace brindlet::testing

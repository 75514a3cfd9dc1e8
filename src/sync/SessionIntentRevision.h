#pragma once

#include <cstdint>

#include "support/Instant.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// The revision of a session's intent, taken from the session itself rather than from a counter,
/// so that devices need no coordination to agree on it.
namespace SessionIntentRevision {

/// Twice the start in whole milliseconds since 1970 (at least 0), plus 1 when ended: the ended
/// version of a session stands exactly one above its active one, and a later session outranks
/// every version of an earlier one.
[[nodiscard]] std::int64_t value(Instant startedAt, SyncedSessionState state);

}  // namespace SessionIntentRevision

}  // namespace brindlet

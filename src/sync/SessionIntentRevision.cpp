#include "sync/SessionIntentRevision.h"

#include <cmath>
#include <cstdlib>

namespace brindlet::SessionIntentRevision {

std::int64_t value(Instant startedAt, SyncedSessionState state) {
  const double milliseconds = std::trunc(startedAt.unixSeconds() * 1000.0);
  // 2^62: anything at or above it can't be doubled within 64 bits. Such dates don't occur, so
  // meeting one is a fault, not a case to handle.
  constexpr double kLimit = 4611686018427387904.0;
  if (milliseconds >= kLimit || std::isnan(milliseconds)) std::abort();
  const std::int64_t base = milliseconds > 0 ? static_cast<std::int64_t>(milliseconds) : 0;
  return base * 2 + (state == SyncedSessionState::ended ? 1 : 0);
}

}  // namespace brindlet::SessionIntentRevision

#include "sync/SessionIntentReducer.h"

#include <algorithm>

namespace brindlet::SessionIntentReducer {

SyncedSessionIntent resolve(const std::optional<SyncedSessionIntent>& local,
                            const SyncedSessionIntent& incoming, Instant now) {
  if (!local) return normalized(incoming, now);
  if (local->sessionID == incoming.sessionID) {
    return normalized(resolveSameSession(*local, incoming, now), now);
  }
  // Nothing is merged across sessions.
  return normalized(isIncomingPreferred(*local, incoming) ? incoming : *local, now);
}

SyncedSessionIntent normalized(const SyncedSessionIntent& intent, Instant now) {
  SyncedSessionIntent result = intent;
  if (intent.mode == SyncedSessionMode::strict && now < intent.endsAt) {
    result.state = SyncedSessionState::active;
  }
  if (now >= intent.endsAt && intent.state == SyncedSessionState::active) {
    result.state = SyncedSessionState::ended;
  }
  return result;
}

SyncedSessionIntent resolveSameSession(const SyncedSessionIntent& local,
                                       const SyncedSessionIntent& incoming, Instant now) {
  SyncedSessionIntent result = isIncomingPreferred(local, incoming) ? incoming : local;
  if (local.mode == SyncedSessionMode::strict || incoming.mode == SyncedSessionMode::strict) {
    // An ended version from any device can neither shorten nor stop a strict session.
    result.mode = SyncedSessionMode::strict;
    result.endsAt = std::max(local.endsAt, incoming.endsAt);
    result.startedAt = std::min(local.startedAt, incoming.startedAt);
    result.state = now < result.endsAt ? SyncedSessionState::active : SyncedSessionState::ended;
    return result;
  }
  const bool localEnded =
      local.state == SyncedSessionState::ended && local.revision >= incoming.revision;
  const bool incomingEnded =
      incoming.state == SyncedSessionState::ended && incoming.revision >= local.revision;
  if (localEnded || incomingEnded) result.state = SyncedSessionState::ended;
  return result;
}

bool isIncomingPreferred(const SyncedSessionIntent& local, const SyncedSessionIntent& incoming) {
  if (local.revision != incoming.revision) return local.revision < incoming.revision;
  if (local.state != incoming.state) return incoming.state == SyncedSessionState::ended;
  if (local.startedAt != incoming.startedAt) return incoming.startedAt > local.startedAt;
  return local.sourceDeviceID < incoming.sourceDeviceID;
}

}  // namespace brindlet::SessionIntentReducer

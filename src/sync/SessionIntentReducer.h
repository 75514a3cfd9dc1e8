#pragma once

#include <optional>

#include "support/Instant.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// Decides which of two versions of an intent stands. Every device gives the same answer for the
/// same pair, whichever side it holds, so devices that see the same versions in any order, late
/// or twice, end on one intent without talking to each other.
namespace SessionIntentReducer {

/// The intent that stands once `incoming` meets what this device holds for its session.
[[nodiscard]] SyncedSessionIntent resolve(const std::optional<SyncedSessionIntent>& local,
                                          const SyncedSessionIntent& incoming, Instant now);

/// The intent with time given the last word: a strict session is active until its end, and any
/// session is ended from its end on. The revision stays as it was.
[[nodiscard]] SyncedSessionIntent normalized(const SyncedSessionIntent& intent, Instant now);

/// Two versions of one session merged: the preferred version, with strictness spreading to the
/// longest span that either side asked for, and an end that either side knows of standing when
/// both are flexible.
[[nodiscard]] SyncedSessionIntent resolveSameSession(const SyncedSessionIntent& local,
                                                     const SyncedSessionIntent& incoming,
                                                     Instant now);

/// Whether `incoming` outranks `local`: by higher revision, then ended over active, then the
/// later start, then the greater source device id. Versions alike in all four keep `local`.
[[nodiscard]] bool isIncomingPreferred(const SyncedSessionIntent& local,
                                       const SyncedSessionIntent& incoming);

}  // namespace SessionIntentReducer

}  // namespace brindlet

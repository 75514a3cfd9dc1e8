#pragma once

#include <cstddef>
#include <cstdint>

#include "persistence/PersistedState.h"

namespace brindlet::bench {

/// A plan of several years: `tasks` tasks spread over days, in every status, with notes,
/// reminders and measured time, and `auditEvents` audit events. The same seed gives the same
/// document. 7,000 tasks and 25,000 events make a state file of about 9 MB.
[[nodiscard]] PersistedState generateState(std::size_t tasks, std::size_t auditEvents,
                                           std::uint32_t seed);

}  // namespace brindlet::bench

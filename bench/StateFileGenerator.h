#pragma once

#include <cstddef>
#include <cstdint>

#include "persistence/PersistedState.h"

namespace brindlet::bench {

/// The size of the large plan all state-file benchmarks measure: about 10 MB on disk.
inline constexpr std::size_t kLargePlanTasks = 7000;
inline constexpr std::size_t kLargePlanAuditEvents = 25000;
inline constexpr std::uint32_t kLargePlanSeed = 20261121;

/// A plan of several years: `tasks` tasks spread over days, in every status, with notes,
/// reminders and measured time, and `auditEvents` audit events. The same seed gives the same
/// document. 7,000 tasks and 25,000 events make a state file of about 9 MB.
[[nodiscard]] PersistedState generateState(std::size_t tasks, std::size_t auditEvents,
                                           std::uint32_t seed);

}  // namespace brindlet::bench

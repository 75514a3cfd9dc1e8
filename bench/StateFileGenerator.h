#pragma once

#include <cstddef>
#include <cstdint>

#include "persistence/PersistedState.h"

namespace brindlet::bench {

/// A plan of years of use: `tasks` tasks spread over many days with every kind of field, and
/// `auditEvents` entries in the audit trail. The same seed gives the same document.
[[nodiscard]] PersistedState generateState(std::size_t tasks, std::size_t auditEvents,
                                           std::uint32_t seed);

}  // namespace brindlet::bench

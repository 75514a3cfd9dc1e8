#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "records/BlockSession.h"
#include "records/DomainGroup.h"
#include "records/FocusTask.h"
#include "records/PlanningProposal.h"
#include "records/ProductivityPreferences.h"
#include "records/TaskAuditEvent.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// The one document that holds everything Brindlet keeps.
struct PersistedState {
  static constexpr std::int64_t currentSchemaVersion = 2;

  std::int64_t schemaVersion = currentSchemaVersion;
  std::vector<DomainGroup> groups{};
  std::optional<BlockSession> activeSession{};
  /// Counts committed task transactions.
  std::int64_t revision = 0;
  std::vector<FocusTask> tasks{};
  std::vector<PlanningProposal> proposals{};
  /// Oldest first; it only ever grows.
  std::vector<TaskAuditEvent> auditEvents{};
  ProductivityPreferences preferences{};

  /// The document of a system that has never saved: the seeded group and nothing else.
  [[nodiscard]] static const PersistedState& initial();

  friend bool operator==(const PersistedState&, const PersistedState&) = default;
};

/// The document as the state file holds it: keys sorted at every level, absent optionals left
/// out, dates as seconds since 2001. Fails with EncodingError for a number JSON can't hold.
[[nodiscard]] std::string encodeState(const PersistedState& state,
                                      JsonWriter::Style style = JsonWriter::Style::pretty);

/// Reads a document tolerantly: top-level keys other than "schemaVersion" may be missing, and a
/// schema 1 document keeps only its groups and session. Fails with DecodingError.
[[nodiscard]] PersistedState persistedStateFromJson(const JsonNode& node);

}  // namespace brindlet

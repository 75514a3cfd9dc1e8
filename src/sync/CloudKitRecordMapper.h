#pragma once

#include <set>
#include <string>
#include <string_view>

#include "support/Instant.h"
#include "sync/CloudRecordEnvelope.h"
#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// The layout of sync records in the cloud record database: one record type per kind, named
/// by the record's derived id, with the record's JSON as its one field of substance.
namespace CloudKitRecordMapper {

inline constexpr std::string_view deviceRecordType = "FocusDevice";
inline constexpr std::string_view intentRecordType = "FocusSessionIntent";
inline constexpr std::string_view acknowledgementRecordType = "FocusEnforcementAck";

/// The three record types above.
[[nodiscard]] const std::set<std::string>& recordTypes();

/// The envelope that carries a record. Fails with EncodingError for a date JSON can't hold.
[[nodiscard]] CloudRecordEnvelope record(const PairedDevice& device, Instant updatedAt);
[[nodiscard]] CloudRecordEnvelope record(const SyncedSessionIntent& intent, Instant updatedAt);
[[nodiscard]] CloudRecordEnvelope record(const EnforcementAcknowledgement& acknowledgement,
                                         Instant updatedAt);

/// The record an envelope carries. Fails with SyncModelError: corruptPayload for a tombstone,
/// an envelope of another type, or a payload that doesn't hold the record;
/// unsupportedSchemaVersion for a record of another schema version.
[[nodiscard]] PairedDevice device(const CloudRecordEnvelope& envelope);
[[nodiscard]] SyncedSessionIntent intent(const CloudRecordEnvelope& envelope);
[[nodiscard]] EnforcementAcknowledgement acknowledgement(const CloudRecordEnvelope& envelope);

}  // namespace CloudKitRecordMapper

}  // namespace brindlet

#pragma once

#include <string>
#include <string_view>

#include "sync/EnforcementAcknowledgement.h"
#include "sync/PairedDevice.h"
#include "sync/RestrictionProfileReference.h"
#include "sync/SyncedSessionIntent.h"

namespace brindlet {

/// The bytes of sync records. A record is written as compact JSON with its keys in field order
/// and read only whole under this build's schema version: a record of another version is
/// refused, never half understood.
namespace SyncModelCodec {

/// The record's JSON as it is, whatever its schema version. Fails with EncodingError for a date
/// that JSON can't hold.
[[nodiscard]] std::string jsonBytes(const PairedDevice& device);
[[nodiscard]] std::string jsonBytes(const SyncedSessionIntent& intent);
[[nodiscard]] std::string jsonBytes(const EnforcementAcknowledgement& acknowledgement);
[[nodiscard]] std::string jsonBytes(const RestrictionProfileReference& profile);

/// The intent's JSON; an intent of another schema version fails with
/// SyncModelError::unsupportedSchemaVersion carrying that version.
[[nodiscard]] std::string encodeSessionIntent(const SyncedSessionIntent& intent);

/// Reads a record. The schema version is looked at before anything else, so that a newer
/// device's record reports its version rather than a decoding failure. Fails with
/// SyncModelError: corruptPayload for bytes that aren't a JSON object with a whole-number
/// "schemaVersion" or that don't hold the record, unsupportedSchemaVersion for any version
/// other than this build's.
[[nodiscard]] SyncedSessionIntent decodeSessionIntent(std::string_view bytes);
[[nodiscard]] PairedDevice decodeDevice(std::string_view bytes);
[[nodiscard]] EnforcementAcknowledgement decodeAcknowledgement(std::string_view bytes);
[[nodiscard]] RestrictionProfileReference decodeRestrictionProfile(std::string_view bytes);

}  // namespace SyncModelCodec

}  // namespace brindlet

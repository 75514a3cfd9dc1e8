#include "sync/SyncModelCodec.h"

#include <memory>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "sync/SyncModelError.h"

namespace brindlet::SyncModelCodec {
namespace {

template <typename Record>
std::string compactJson(const Record& record) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, record);
  return out.take();
}

template <typename Decode>
auto decodeVersioned(std::string_view bytes, Decode decode) {
  std::unique_ptr<JsonDocument> document;
  try {
    document = std::make_unique<JsonDocument>(bytes);
  } catch (const DecodingError&) {
    throw SyncModelError::corruptPayload();
  }
  std::int64_t version = 0;
  try {
    version = document->root().object().required("schemaVersion").integer();
  } catch (const DecodingError&) {
    throw SyncModelError::corruptPayload();
  }
  if (version != focusSyncSchemaVersion) throw SyncModelError::unsupportedSchemaVersion(version);
  try {
    return decode(document->root());
  } catch (const DecodingError&) {
    throw SyncModelError::corruptPayload();
  }
}

}  // namespace

std::string jsonBytes(const PairedDevice& device) { return compactJson(device); }
std::string jsonBytes(const SyncedSessionIntent& intent) { return compactJson(intent); }
std::string jsonBytes(const EnforcementAcknowledgement& acknowledgement) {
  return compactJson(acknowledgement);
}
std::string jsonBytes(const RestrictionProfileReference& profile) { return compactJson(profile); }

std::string encodeSessionIntent(const SyncedSessionIntent& intent) {
  if (intent.schemaVersion != focusSyncSchemaVersion) {
    throw SyncModelError::unsupportedSchemaVersion(intent.schemaVersion);
  }
  return jsonBytes(intent);
}

SyncedSessionIntent decodeSessionIntent(std::string_view bytes) {
  return decodeVersioned(bytes, syncedSessionIntentFromJson);
}

PairedDevice decodeDevice(std::string_view bytes) {
  return decodeVersioned(bytes, pairedDeviceFromJson);
}

EnforcementAcknowledgement decodeAcknowledgement(std::string_view bytes) {
  return decodeVersioned(bytes, enforcementAcknowledgementFromJson);
}

RestrictionProfileReference decodeRestrictionProfile(std::string_view bytes) {
  return decodeVersioned(bytes, restrictionProfileReferenceFromJson);
}

}  // namespace brindlet::SyncModelCodec

#include "sync/CloudKitRecordMapper.h"

#include "sync/SyncModelCodec.h"
#include "sync/SyncModelError.h"

namespace brindlet::CloudKitRecordMapper {
namespace {

// A tombstone or an envelope of another kind holds nothing that this kind could read.
void checkEnvelope(const CloudRecordEnvelope& envelope, std::string_view expectedType) {
  if (envelope.isDeleted || envelope.recordType != expectedType) {
    throw SyncModelError::corruptPayload();
  }
}

}  // namespace

const std::set<std::string>& recordTypes() {
  static const std::set<std::string> types{std::string(deviceRecordType),
                                           std::string(intentRecordType),
                                           std::string(acknowledgementRecordType)};
  return types;
}

CloudRecordEnvelope record(const PairedDevice& device, Instant updatedAt) {
  return {.recordType = std::string(deviceRecordType),
          .recordID = device.recordID(),
          .payload = SyncModelCodec::jsonBytes(device),
          .updatedAt = updatedAt,
          .isDeleted = false};
}

CloudRecordEnvelope record(const SyncedSessionIntent& intent, Instant updatedAt) {
  return {.recordType = std::string(intentRecordType),
          .recordID = intent.recordID(),
          .payload = SyncModelCodec::jsonBytes(intent),
          .updatedAt = updatedAt,
          .isDeleted = false};
}

CloudRecordEnvelope record(const EnforcementAcknowledgement& acknowledgement, Instant updatedAt) {
  return {.recordType = std::string(acknowledgementRecordType),
          .recordID = acknowledgement.recordID(),
          .payload = SyncModelCodec::jsonBytes(acknowledgement),
          .updatedAt = updatedAt,
          .isDeleted = false};
}

PairedDevice device(const CloudRecordEnvelope& envelope) {
  checkEnvelope(envelope, deviceRecordType);
  return SyncModelCodec::decodeDevice(envelope.payload);
}

SyncedSessionIntent intent(const CloudRecordEnvelope& envelope) {
  checkEnvelope(envelope, intentRecordType);
  return SyncModelCodec::decodeSessionIntent(envelope.payload);
}

EnforcementAcknowledgement acknowledgement(const CloudRecordEnvelope& envelope) {
  checkEnvelope(envelope, acknowledgementRecordType);
  return SyncModelCodec::decodeAcknowledgement(envelope.payload);
}

}  // namespace brindlet::CloudKitRecordMapper

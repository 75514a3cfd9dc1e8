// The decoders of records that arrive from other devices, on arbitrary bytes: each gives a
// record or refuses with a sync error, and a record it accepts is written and read back equal.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/JsonWriter.h"
#include "sync/SyncModelCodec.h"
#include "sync/SyncModelError.h"

namespace {

template <typename Decode>
void roundTrip(std::string_view bytes, Decode decode) {
  decltype(decode(bytes)) record;
  try {
    record = decode(bytes);
  } catch (const brindlet::SyncModelError&) {
    return;
  }
  std::string written;
  try {
    written = brindlet::SyncModelCodec::jsonBytes(record);
  } catch (const brindlet::EncodingError&) {
    return;
  }
  if (!(decode(written) == record)) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  namespace codec = brindlet::SyncModelCodec;
  roundTrip(bytes, [](std::string_view b) { return codec::decodeSessionIntent(b); });
  roundTrip(bytes, [](std::string_view b) { return codec::decodeDevice(b); });
  roundTrip(bytes, [](std::string_view b) { return codec::decodeAcknowledgement(b); });
  roundTrip(bytes, [](std::string_view b) { return codec::decodeRestrictionProfile(b); });
  return 0;
}

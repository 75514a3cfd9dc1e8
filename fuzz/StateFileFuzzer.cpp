// The state file decoder on arbitrary bytes: a document, or a decoding or validation failure,
// and nothing else. A document that decodes must survive being written and read again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "persistence/PersistedState.h"
#include "support/JsonReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  brindlet::PersistedState state;
  try {
    const brindlet::JsonDocument document(text);
    state = brindlet::persistedStateFromJson(document.root());
    for (const brindlet::FocusTask& task : state.tasks) task.validate();
  } catch (const brindlet::BrindletError&) {
    return 0;
  }
  std::string written;
  try {
    written = brindlet::encodeState(state);
  } catch (const brindlet::EncodingError&) {
    return 0;  // a number JSON can't hold, such as 1e999 read as infinity
  }
  const brindlet::JsonDocument again(written);
  if (!(brindlet::persistedStateFromJson(again.root()) == state)) __builtin_trap();
  return 0;
}

// One line of agent input on arbitrary bytes: it is empty, invalid, or a command envelope that
// writes and reads back as itself. A response carrying the payload as its result must read back
// the same too. Any exception ends the run as a crash.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "agent/AgentLineTransport.h"
#include "agent/AgentResponseEnvelope.h"
#include "support/JsonWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlet;
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  const AgentLineTransport::Line read = AgentLineTransport::read(line);
  if (read.kind != AgentLineTransport::Line::Kind::command) {
    if (read.envelope) __builtin_trap();
    return 0;
  }
  const AgentCommandEnvelope& envelope = *read.envelope;
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, envelope);
  const auto again = decodeAgentCommandEnvelope(out.text());
  if (!again || !(*again == envelope)) __builtin_trap();

  const AgentResponseEnvelope response{.version = envelope.version,
                                       .ok = envelope.userApproval,
                                       .revision = envelope.expectedRevision,
                                       .result = JSONValue::ofObject(envelope.payload)};
  const std::string written = AgentLineTransport::write(response);
  const auto answer = decodeAgentResponseEnvelope(written);
  if (!answer || !(*answer == response)) __builtin_trap();
  if (written.find('\n') != std::string::npos) __builtin_trap();
  return 0;
}

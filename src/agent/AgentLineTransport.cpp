#include "agent/AgentLineTransport.h"

#include <istream>
#include <ostream>

#include "support/JsonWriter.h"

namespace brindlet {
AgentLineTransport::Line AgentLineTransport::read(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.empty()) return {};
  auto envelope = decodeAgentCommandEnvelope(line);
  if (!envelope) return {.kind = Line::Kind::invalid};
  return {.kind = Line::Kind::command, .envelope = std::move(envelope)};
}

std::string AgentLineTransport::write(const AgentResponseEnvelope& response) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, response);
  return out.take();
}

std::optional<std::string> AgentLineTransport::answer(AgentCommandService& service,
                                                      std::string_view line, Instant now) {
  const Line read = AgentLineTransport::read(line);
  switch (read.kind) {
    case Line::Kind::empty:
      return std::nullopt;
    case Line::Kind::invalid:
      return std::string(kInvalidEnvelopeLine);
    case Line::Kind::command:
      break;
  }
  const AgentResponseEnvelope response = service.execute(*read.envelope, now);
  try {
    return write(response);
  } catch (const EncodingError&) {
    // A result that can't be written as JSON is a command that couldn't be completed; the
    // client still gets a line for its line.
    return write(AgentResponseEnvelope{
        .version = 1,
        .ok = false,
        .error = AgentCommandError{"operation_failed", "The command could not be completed."}});
  }
}

void AgentLineTransport::serve(AgentCommandService& service, std::istream& input,
                               std::ostream& output, const Clock& clock) {
  std::string line;
  while (std::getline(input, line)) {
    const auto reply = answer(service, line, clock.now());
    if (!reply) continue;
    output << *reply << '\n';
    output.flush();
  }
}

}  // namespace brindlet

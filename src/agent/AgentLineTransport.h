#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "agent/AgentCommandEnvelope.h"
#include "agent/AgentCommandService.h"
#include "agent/AgentResponseEnvelope.h"
#include "support/Clock.h"

namespace brindlet {

/// Commands and answers as lines of text: one compact JSON command envelope per line in, one
/// compact response envelope per line out.
class AgentLineTransport {
 public:
  /// What one line of input asks for.
  struct Line {
    enum class Kind { empty, invalid, command };
    Kind kind = Kind::empty;
    std::optional<AgentCommandEnvelope> envelope{};
  };

  /// The answer to a line that isn't a command envelope.
  static constexpr std::string_view kInvalidEnvelopeLine =
      R"({"version":1,"ok":false,"error":{"code":"invalid_envelope","message":"The command envelope could not be read."}})";

  AgentLineTransport() = delete;

  /// Reads one line, without its line end; a trailing carriage return is dropped too. Anything
  /// but a line with no characters at all must be a command envelope, or it is invalid.
  [[nodiscard]] static Line read(std::string_view line);

  /// The response as one line of compact JSON, without the line end.
  [[nodiscard]] static std::string write(const AgentResponseEnvelope& response);

  /// The answer to one line; absent for an empty line, which gets none.
  [[nodiscard]] static std::optional<std::string> answer(AgentCommandService& service,
                                                         std::string_view line, Instant now);

  /// Answers the lines of `input` on `output` until the input ends, flushing after each answer
  /// so that a client waiting for it gets it at once. Each command runs at the clock's time.
  static void serve(AgentCommandService& service, std::istream& input, std::ostream& output,
                    const Clock& clock);
};

}  // namespace brindlet

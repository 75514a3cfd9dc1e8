#include "blocking/ShellCommand.h"

#include <simdjson.h>

#include "support/Text.h"

namespace brindlet {

std::string shellQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  quoted += '\'';
  return quoted;
}

std::string standardErrorText(std::string_view bytes) {
  if (!simdjson::validate_utf8(bytes.data(), bytes.size())) return {};
  return std::string(trimmedWhitespace(bytes));
}

}  // namespace brindlet

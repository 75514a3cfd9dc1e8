#pragma once

#include <string>
#include <string_view>

namespace brindlet {

/// The text as one word of a POSIX shell command, whatever it holds: in single quotes, each
/// single quote inside written as '\''.
[[nodiscard]] std::string shellQuoted(std::string_view text);

/// What a privileged command wrote to standard error, as words for the user: trimmed of
/// white space and line ends, and empty when the bytes aren't UTF-8 text.
[[nodiscard]] std::string standardErrorText(std::string_view bytes);

}  // namespace brindlet

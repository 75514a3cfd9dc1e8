#pragma once

#include <string>
#include <string_view>

namespace brindlet {

/// The text without white space and line ends at either end, Unicode spaces included.
[[nodiscard]] std::string_view trimmedWhitespace(std::string_view text);

/// Whether the text holds nothing but white space and line ends.
[[nodiscard]] inline bool isBlank(std::string_view text) { return trimmedWhitespace(text).empty(); }

}  // namespace brindlet

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brindlet {

/// Standard base64 text of bytes (RFC 4648, with "+", "/" and "=" padding).
[[nodiscard]] std::string base64Encoded(std::string_view bytes);

/// The bytes of standard, padded base64 text; absent for anything else.
[[nodiscard]] std::optional<std::string> base64Decoded(std::string_view text);

}  // namespace brindlet

#include "support/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace brindlet {

std::string_view trimmedWhitespace(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t start = 0;
  while (start < length) {
    std::int32_t next = start;
    UChar32 c = 0;
    U8_NEXT(bytes, next, length, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    start = next;
  }
  std::int32_t end = length;
  while (end > start) {
    std::int32_t previous = end;
    UChar32 c = 0;
    U8_PREV(bytes, start, previous, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    end = previous;
  }
  return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

}  // namespace brindlet

#include "support/Uuid.h"

#include <uuid/uuid.h>

#include <cassert>
#include <cstdlib>
#include <cstring>
#include <string>

namespace brindlet {
namespace {

constexpr std::size_t kTextLength = 36;

constexpr std::array<std::int8_t, 256> kHexValues = [] {
  std::array<std::int8_t, 256> values{};
  values.fill(-1);
  for (int i = 0; i < 10; ++i) values['0' + i] = static_cast<std::int8_t>(i);
  for (int i = 0; i < 6; ++i) {
    values['a' + i] = static_cast<std::int8_t>(10 + i);
    values['A' + i] = static_cast<std::int8_t>(10 + i);
  }
  return values;
}();

int hexValue(char c) { return kHexValues[static_cast<unsigned char>(c)]; }

std::string formatted(const std::array<std::uint8_t, 16>& bytes, const char* digits) {
  std::string text(kTextLength, '-');
  std::size_t at = 0;
  for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
    if (at == 8 || at == 13 || at == 18 || at == 23) ++at;
    text[at++] = digits[bytes[byte] >> 4];
    text[at++] = digits[bytes[byte] & 0xF];
  }
  return text;
}

}  // namespace

Uuid Uuid::random() {
  std::array<std::uint8_t, 16> bytes{};
  uuid_generate_random(bytes.data());
  return Uuid(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  // Hand-written rather than uuid_parse: that one converts each field with strtoull, which was
  // a fifth of the time of loading a large state file.
  constexpr std::array<std::size_t, 16> kByteOffsets = {0,  2,  4,  6,  9,  11, 14, 16,
                                                        19, 21, 24, 26, 28, 30, 32, 34};
  if (text.size() != kTextLength || text[8] != '-' || text[13] != '-' || text[18] != '-' ||
      text[23] != '-') {
    return std::nullopt;
  }
  std::array<std::uint8_t, 16> bytes{};
  int invalid = 0;
  for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
    const int high = hexValue(text[kByteOffsets[byte]]);
    const int low = hexValue(text[kByteOffsets[byte] + 1]);
    invalid |= high | low;
    bytes[byte] = static_cast<std::uint8_t>((high << 4) | low);
  }
  // A digit that isn't hex reads as -1, which sets the sign bit of `invalid`.
  if (invalid < 0) return std::nullopt;
  return Uuid(bytes);
}

Uuid Uuid::fromLiteral(std::string_view text) {
  const auto id = parse(text);
  if (!id) std::abort();
  return *id;
}

std::string Uuid::uppercaseText() const { return formatted(bytes_, "0123456789ABCDEF"); }

std::string Uuid::lowercaseText() const { return formatted(bytes_, "0123456789abcdef"); }

}  // namespace brindlet

std::size_t std::hash<brindlet::Uuid>::operator()(const brindlet::Uuid& id) const noexcept {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  std::memcpy(&high, id.bytes().data(), 8);
  std::memcpy(&low, id.bytes().data() + 8, 8);
  return std::hash<std::uint64_t>{}(high ^ (low * 0x9E3779B97F4A7C15ULL));
}

#include "support/Base64.h"

#include <array>
#include <cstdint>

namespace brindlet {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> makeDecodingTable() {
  std::array<std::int8_t, 256> table{};
  table.fill(-1);
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
  }
  return table;
}

constexpr std::array<std::int8_t, 256> kDecodingTable = makeDecodingTable();

}  // namespace

std::string base64Encoded(std::string_view bytes) {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  std::size_t i = 0;
  for (; i + 3 <= bytes.size(); i += 3) {
    const std::uint32_t group =
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << 16 |
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8 |
        static_cast<unsigned char>(bytes[i + 2]);
    out += kAlphabet[group >> 18 & 0x3F];
    out += kAlphabet[group >> 12 & 0x3F];
    out += kAlphabet[group >> 6 & 0x3F];
    out += kAlphabet[group & 0x3F];
  }
  const std::size_t rest = bytes.size() - i;
  if (rest > 0) {
    std::uint32_t group = static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << 16;
    if (rest == 2)
      group |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
    out += kAlphabet[group >> 18 & 0x3F];
    out += kAlphabet[group >> 12 & 0x3F];
    out += rest == 2 ? kAlphabet[group >> 6 & 0x3F] : '=';
    out += '=';
  }
  return out;
}

std::optional<std::string> base64Decoded(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::string out;
  out.reserve(text.size() / 4 * 3);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const bool isLast = i + 4 == text.size();
    const std::size_t padding =
        isLast ? (text[i + 3] == '=' ? 1 : 0) + (text[i + 2] == '=' ? 1 : 0) : 0;
    if (padding == 1 && text[i + 2] == '=') return std::nullopt;
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 4 - padding; ++j) {
      const std::int8_t value = kDecodingTable[static_cast<unsigned char>(text[i + j])];
      if (value < 0) return std::nullopt;
      group |= static_cast<std::uint32_t>(value) << (18 - 6 * j);
    }
    // Bits that padding leaves unused must be zero, so each byte string has one text.
    if (padding == 1 && (group & 0xFF) != 0) return std::nullopt;
    if (padding == 2 && (group & 0xFFFF) != 0) return std::nullopt;
    out += static_cast<char>(group >> 16 & 0xFF);
    if (padding < 2) out += static_cast<char>(group >> 8 & 0xFF);
    if (padding < 1) out += static_cast<char>(group & 0xFF);
  }
  return out;
}

}  // namespace brindlet

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "support/JsonReader.h"

namespace brindlet {

/// The raw texts of an enumeration, in declaration order.
template <typename Enum, std::size_t N>
struct EnumText {
  std::array<std::pair<Enum, std::string_view>, N> entries;

  [[nodiscard]] constexpr std::string_view text(Enum value) const {
    for (const auto& [candidate, text] : entries) {
      if (candidate == value) return text;
    }
    return {};
  }

  [[nodiscard]] constexpr std::optional<Enum> parse(std::string_view text) const {
    for (const auto& [value, candidate] : entries) {
      if (candidate == text) return value;
    }
    return std::nullopt;
  }

  /// The value a node's text names; any other text fails the decoding.
  [[nodiscard]] Enum decode(const JsonNode& node) const {
    const std::string_view raw = node.string();
    if (const auto value = parse(raw)) return *value;
    std::string known;
    for (const auto& entry : entries) {
      known += known.empty() ? "" : ", ";
      known += entry.second;
    }
    node.fail(DecodingError::Case::invalidValue,
              "“" + std::string(raw) + "” is not one of " + known + ".");
  }
};

}  // namespace brindlet

#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brindlet {

/// A 128-bit identifier, written as canonical 8-4-4-4-12 text.
class Uuid {
 public:
  /// The nil identifier, all zero.
  constexpr Uuid() = default;
  constexpr explicit Uuid(const std::array<std::uint8_t, 16>& bytes) : bytes_(bytes) {}

  /// A fresh random (version 4) identifier.
  [[nodiscard]] static Uuid random();
  /// Reads canonical text in either case; absent for anything else.
  [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);
  /// Like parse, for identifiers written into the program; a bad literal is a programming fault.
  [[nodiscard]] static Uuid fromLiteral(std::string_view text);

  /// Canonical upper-case text, the form the state file holds.
  [[nodiscard]] std::string uppercaseText() const;
  [[nodiscard]] std::string lowercaseText() const;
  [[nodiscard]] const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

  friend constexpr auto operator<=>(const Uuid&, const Uuid&) = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace brindlet

template <>
struct std::hash<brindlet::Uuid> {
  std::size_t operator()(const brindlet::Uuid& id) const noexcept;
};

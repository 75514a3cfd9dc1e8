#include "support/Uuid.h"

#include <uuid/uuid.h>

#include <cassert>
#include <cstdlib>
#include <cstring>

namespace brindlet {
namespace {

constexpr std::size_t kTextLength = 36;

}  // namespace

Uuid Uuid::random() {
  std::array<std::uint8_t, 16> bytes{};
  uuid_generate_random(bytes.data());
  return Uuid(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != kTextLength) return std::nullopt;
  char terminated[kTextLength + 1];
  std::memcpy(terminated, text.data(), kTextLength);
  terminated[kTextLength] = '\0';
  std::array<std::uint8_t, 16> bytes{};
  if (uuid_parse(terminated, bytes.data()) != 0) return std::nullopt;
  return Uuid(bytes);
}

Uuid Uuid::fromLiteral(std::string_view text) {
  const auto id = parse(text);
  if (!id) std::abort();
  return *id;
}

std::string Uuid::uppercaseText() const {
  char text[kTextLength + 1];
  uuid_unparse_upper(bytes_.data(), text);
  return {text, kTextLength};
}

std::string Uuid::lowercaseText() const {
  char text[kTextLength + 1];
  uuid_unparse_lower(bytes_.data(), text);
  return {text, kTextLength};
}

}  // namespace brindlet

std::size_t std::hash<brindlet::Uuid>::operator()(const brindlet::Uuid& id) const noexcept {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  std::memcpy(&high, id.bytes().data(), 8);
  std::memcpy(&low, id.bytes().data() + 8, 8);
  return std::hash<std::uint64_t>{}(high ^ (low * 0x9E3779B97F4A7C15ULL));
}

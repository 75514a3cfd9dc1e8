#pragma once

#include <optional>
#include <string_view>

#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

// Small pieces shared by the JSON forms of the records.
namespace brindlet::json {

/// Writes `key` and the value only when it is present: an absent optional has no key at all.
template <typename T, typename Write>
void optionalKey(JsonWriter& out, std::string_view key, const std::optional<T>& value,
                 Write write) {
  if (value) write(out.key(key), *value);
}

/// The value of a key that may be missing or null.
template <typename T, typename Read>
std::optional<T> optionalValue(const JsonObject& object, std::string_view key, Read read) {
  if (const auto node = object.optional(key)) return read(*node);
  return std::nullopt;
}

inline void writeInstant(JsonWriter& out, Instant instant) {
  out.number(instant.secondsSinceReferenceDate());
}

inline void writeUuid(JsonWriter& out, const Uuid& id) { out.string(id.uppercaseText()); }

inline Instant readInstant(const JsonNode& node) { return node.instant(); }
inline Uuid readUuid(const JsonNode& node) { return node.uuid(); }

}  // namespace brindlet::json

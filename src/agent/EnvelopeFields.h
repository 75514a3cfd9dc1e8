#pragma once

#include <simdjson.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Reading the typed keys of the envelopes. Every reader gives absent for a value of the wrong
// kind, and the envelope decoders give up as a whole on the first absent value of a key that
// is there.
namespace brindlet::envelope {

/// A key's value; absent when the key is missing or null, which the envelopes treat alike.
inline std::optional<simdjson::dom::element> field(simdjson::dom::object object,
                                                   std::string_view key) {
  simdjson::dom::element value;
  if (object.at_key(key).get(value) != simdjson::SUCCESS || value.is_null()) return std::nullopt;
  return value;
}

/// A whole number within the signed 64-bit range; a number written with a zero fraction counts.
inline std::optional<std::int64_t> readInteger(simdjson::dom::element element) {
  std::int64_t whole = 0;
  if (element.is_int64() && element.get_int64().get(whole) == simdjson::SUCCESS) return whole;
  if (!element.is_double()) return std::nullopt;
  const double real = element.get_double().value_unsafe();
  constexpr double kLimit = 9223372036854775808.0;
  if (std::trunc(real) != real || real < -kLimit || real >= kLimit) return std::nullopt;
  return static_cast<std::int64_t>(real);
}

inline std::optional<std::string> readString(simdjson::dom::element element) {
  std::string_view text;
  if (element.get_string().get(text) != simdjson::SUCCESS) return std::nullopt;
  return std::string(text);
}

inline std::optional<bool> readBool(simdjson::dom::element element) {
  bool flag = false;
  if (element.get_bool().get(flag) != simdjson::SUCCESS) return std::nullopt;
  return flag;
}

inline std::optional<simdjson::dom::object> readObject(simdjson::dom::element element) {
  simdjson::dom::object object;
  if (element.get_object().get(object) != simdjson::SUCCESS) return std::nullopt;
  return object;
}

/// The value of a key read by `read`; absent when the key is missing, null or of another kind.
template <typename Read>
auto fieldAs(simdjson::dom::object object, std::string_view key, Read read)
    -> decltype(read(simdjson::dom::element())) {
  const auto value = field(object, key);
  if (!value) return std::nullopt;
  return read(*value);
}

/// The top-level object of a text, parsed by `parser`, which must outlive it.
inline std::optional<simdjson::dom::object> parseObject(simdjson::dom::parser& parser,
                                                        std::string_view text) {
  simdjson::dom::element root;
  if (parser.parse(text.data(), text.size()).get(root) != simdjson::SUCCESS) return std::nullopt;
  return readObject(root);
}

}  // namespace brindlet::envelope

#pragma once

#include <simdjson.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "support/JsonWriter.h"

namespace brindlet {

class JSONValue;

/// The members of a JSON object. Keys are unique and keep the order they were first set in, so
/// that what is written reads in a stable order; two objects are equal when they hold the same
/// keys with equal values, in whatever order.
class JSONObject {
 public:
  using Entry = std::pair<std::string, JSONValue>;

  JSONObject() = default;
  JSONObject(std::initializer_list<Entry> entries);

  /// The value of a key, null when the key isn't there.
  [[nodiscard]] const JSONValue* find(std::string_view key) const;
  [[nodiscard]] bool contains(std::string_view key) const { return find(key) != nullptr; }
  /// Sets a key's value; a key already there keeps its place.
  void set(std::string key, JSONValue value);

  // Defined below JSONValue, which an entry needs whole.
  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const;
  [[nodiscard]] std::vector<Entry>::const_iterator begin() const;
  [[nodiscard]] std::vector<Entry>::const_iterator end() const;

  friend bool operator==(const JSONObject& a, const JSONObject& b);

 private:
  std::vector<Entry> entries_;
};

/// Any JSON value, as a client sends it in a payload or receives it in a result. Numbers are
/// all doubles: a whole number is read back through `integer()`.
class JSONValue {
 public:
  /// The six kinds, in the order the cases are declared.
  enum class Kind { string, number, boolean, object, array, null };

  using Array = std::vector<JSONValue>;
  struct Null {
    friend bool operator==(Null, Null) = default;
  };

  /// JSON null.
  JSONValue() = default;

  [[nodiscard]] static JSONValue ofString(std::string text) { return JSONValue(std::move(text)); }
  [[nodiscard]] static JSONValue ofNumber(double number) { return JSONValue(number); }
  [[nodiscard]] static JSONValue ofBool(bool flag) { return JSONValue(flag); }
  [[nodiscard]] static JSONValue ofObject(JSONObject object) {
    return JSONValue(std::move(object));
  }
  [[nodiscard]] static JSONValue ofArray(Array items) { return JSONValue(std::move(items)); }
  [[nodiscard]] static JSONValue null() { return {}; }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(value_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }

  /// The text of a string; absent for every other kind.
  [[nodiscard]] std::optional<std::string> string() const;
  /// The number as a whole number: absent for other kinds, for numbers that aren't finite or
  /// have a fraction, and for numbers beyond the 64-bit range.
  [[nodiscard]] std::optional<std::int64_t> integer() const;

  [[nodiscard]] const double* number() const { return std::get_if<double>(&value_); }
  [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&value_); }
  [[nodiscard]] const JSONObject* object() const { return std::get_if<JSONObject>(&value_); }
  [[nodiscard]] const Array* array() const { return std::get_if<Array>(&value_); }

  friend bool operator==(const JSONValue&, const JSONValue&) = default;

 private:
  explicit JSONValue(std::string text) : value_(std::move(text)) {}
  explicit JSONValue(double number) : value_(number) {}
  explicit JSONValue(bool flag) : value_(flag) {}
  explicit JSONValue(JSONObject object) : value_(std::move(object)) {}
  explicit JSONValue(Array items) : value_(std::move(items)) {}

  std::variant<std::string, double, bool, JSONObject, Array, Null> value_{Null{}};
};

inline std::size_t JSONObject::size() const { return entries_.size(); }
inline bool JSONObject::empty() const { return entries_.empty(); }
inline std::vector<JSONObject::Entry>::const_iterator JSONObject::begin() const {
  return entries_.begin();
}
inline std::vector<JSONObject::Entry>::const_iterator JSONObject::end() const {
  return entries_.end();
}

/// Writes the value bare, as a JSON value of its own kind. Fails with EncodingError for a number
/// that isn't finite.
void toJson(JsonWriter& out, const JSONValue& value);
void toJson(JsonWriter& out, const JSONObject& object);

/// The value of a parsed element: text, a number (a boolean stays a boolean), an array, an
/// object, and null for anything else.
[[nodiscard]] JSONValue jsonValueFromElement(simdjson::dom::element element);

/// The value of JSON text; absent when the text isn't one JSON value.
[[nodiscard]] std::optional<JSONValue> parseJSONValue(std::string_view text);

}  // namespace brindlet

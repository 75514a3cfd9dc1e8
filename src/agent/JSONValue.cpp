#include "agent/JSONValue.h"

#include <cmath>
#include <cstdlib>

namespace brindlet {

JSONObject::JSONObject(std::initializer_list<Entry> entries) {
  for (const Entry& entry : entries) set(entry.first, entry.second);
}

const JSONValue* JSONObject::find(std::string_view key) const {
  for (const Entry& entry : entries_) {
    if (entry.first == key) return &entry.second;
  }
  return nullptr;
}

void JSONObject::set(std::string key, JSONValue value) {
  for (Entry& entry : entries_) {
    if (entry.first == key) {
      entry.second = std::move(value);
      return;
    }
  }
  entries_.emplace_back(std::move(key), std::move(value));
}

bool operator==(const JSONObject& a, const JSONObject& b) {
  if (a.size() != b.size()) return false;
  for (const auto& [key, value] : a) {
    const JSONValue* other = b.find(key);
    if (other == nullptr || !(*other == value)) return false;
  }
  return true;
}

std::optional<std::string> JSONValue::string() const {
  if (const auto* text = std::get_if<std::string>(&value_)) return *text;
  return std::nullopt;
}

std::optional<std::int64_t> JSONValue::integer() const {
  const double* value = number();
  if (value == nullptr || !std::isfinite(*value)) return std::nullopt;
  // std::round takes halves away from zero.
  if (std::round(*value) != *value) return std::nullopt;
  // 2^63 itself passes the range test and has no 64-bit form. Reading it is a fault in the
  // client that the process doesn't survive, the same as an overflowing revision.
  constexpr double kLimit = 9223372036854775808.0;
  if (*value < -kLimit || *value > kLimit) return std::nullopt;
  if (*value == kLimit) std::abort();
  return static_cast<std::int64_t>(*value);
}

void toJson(JsonWriter& out, const JSONObject& object) {
  out.beginObject();
  for (const auto& [key, value] : object) toJson(out.key(key), value);
  out.endObject();
}

void toJson(JsonWriter& out, const JSONValue& value) {
  switch (value.kind()) {
    case JSONValue::Kind::string:
      out.string(*value.string());
      return;
    case JSONValue::Kind::number:
      out.number(*value.number());
      return;
    case JSONValue::Kind::boolean:
      out.boolean(*value.boolean());
      return;
    case JSONValue::Kind::object:
      toJson(out, *value.object());
      return;
    case JSONValue::Kind::array:
      out.beginArray();
      for (const JSONValue& item : *value.array()) toJson(out, item);
      out.endArray();
      return;
    case JSONValue::Kind::null:
      out.null();
      return;
  }
}

JSONValue jsonValueFromElement(simdjson::dom::element element) {
  using simdjson::dom::element_type;
  switch (element.type()) {
    case element_type::STRING:
      return JSONValue::ofString(std::string(element.get_string().value_unsafe()));
    // A boolean is told apart from a number by its kind, never by its value: 1 stays a number.
    case element_type::BOOL:
      return JSONValue::ofBool(element.get_bool().value_unsafe());
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
      return JSONValue::ofNumber(element.get_double().value_unsafe());
    case element_type::ARRAY: {
      const simdjson::dom::array elements = element.get_array().value_unsafe();
      JSONValue::Array items;
      items.reserve(elements.size());
      for (const simdjson::dom::element item : elements) {
        items.push_back(jsonValueFromElement(item));
      }
      return JSONValue::ofArray(std::move(items));
    }
    case element_type::OBJECT: {
      const simdjson::dom::object fields = element.get_object().value_unsafe();
      JSONObject object;
      for (const auto field : fields) {
        object.set(std::string(field.key), jsonValueFromElement(field.value));
      }
      return JSONValue::ofObject(std::move(object));
    }
    case element_type::NULL_VALUE:
      return JSONValue::null();
  }
  return JSONValue::null();
}

std::optional<JSONValue> parseJSONValue(std::string_view text) {
  simdjson::dom::parser parser;
  simdjson::dom::element root;
  if (parser.parse(text.data(), text.size()).get(root) != simdjson::SUCCESS) return std::nullopt;
  return jsonValueFromElement(root);
}

}  // namespace brindlet

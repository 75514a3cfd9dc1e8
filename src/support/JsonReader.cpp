#include "support/JsonReader.h"

#include <cmath>
#include <limits>

namespace brindlet {
namespace {

// Parsers keep their buffers between documents; reusing one spares a large allocation per
// read of the state file.
thread_local std::vector<std::unique_ptr<simdjson::dom::parser>> spareParsers;
constexpr std::size_t kMaxSpareParsers = 2;

std::unique_ptr<simdjson::dom::parser> borrowParser() {
  if (spareParsers.empty()) return std::make_unique<simdjson::dom::parser>();
  auto parser = std::move(spareParsers.back());
  spareParsers.pop_back();
  return parser;
}

void returnParser(std::unique_ptr<simdjson::dom::parser> parser) {
  if (parser && spareParsers.size() < kMaxSpareParsers) spareParsers.push_back(std::move(parser));
}

const char* typeName(simdjson::dom::element_type type) {
  using simdjson::dom::element_type;
  switch (type) {
    case element_type::ARRAY:
      return "a list";
    case element_type::OBJECT:
      return "an object";
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
      return "a number";
    case element_type::STRING:
      return "text";
    case element_type::BOOL:
      return "true or false";
    case element_type::NULL_VALUE:
      return "null";
  }
  return "something else";
}

}  // namespace

DecodingError::DecodingError(Case which, std::string path, std::string detail)
    : case_(which), path_(std::move(path)), detail_(std::move(detail)) {}

std::string DecodingError::description() const {
  switch (case_) {
    case Case::invalidJson:
      return "The file is not valid JSON (" + detail_ + ").";
    case Case::keyNotFound:
      return "The value “" + path_ + "” is missing.";
    case Case::typeMismatch:
      return "The value “" + path_ + "” should be " + detail_ + ".";
    case Case::invalidValue:
      return "The value “" + path_ + "” is not valid: " + detail_;
  }
  return "The data could not be read.";
}

JsonNode::JsonNode(simdjson::dom::element element, const JsonNode* parent, std::string_view key,
                   std::size_t index)
    : element_(element), parent_(parent), key_(key), index_(index) {}

std::string JsonNode::path() const {
  if (parent_ == nullptr) return "(document)";
  std::string above = parent_->parent_ == nullptr ? std::string() : parent_->path();
  if (key_.data() != nullptr) {
    return above.empty() ? std::string(key_) : above + "." + std::string(key_);
  }
  return above + "[" + std::to_string(index_) + "]";
}

void JsonNode::fail(DecodingError::Case which, std::string detail) const {
  throw DecodingError(which, path(), std::move(detail));
}

std::string_view JsonNode::string() const {
  std::string_view text;
  if (element_.get_string().get(text) != simdjson::SUCCESS) {
    fail(DecodingError::Case::typeMismatch, std::string("text, not ") + typeName(element_.type()));
  }
  return text;
}

std::int64_t JsonNode::integer() const {
  std::int64_t value = 0;
  if (element_.get_int64().get(value) == simdjson::SUCCESS) return value;
  double real = 0;
  // 2^63 is exactly representable, so the bounds below are exact.
  constexpr double kLimit = 9223372036854775808.0;
  if (element_.get_double().get(real) == simdjson::SUCCESS && std::trunc(real) == real &&
      real >= -kLimit && real < kLimit) {
    return static_cast<std::int64_t>(real);
  }
  fail(DecodingError::Case::typeMismatch,
       element_.is_number() ? "a whole number within range"
                            : std::string("a whole number, not ") + typeName(element_.type()));
}

double JsonNode::number() const {
  double value = 0;
  if (element_.get_double().get(value) != simdjson::SUCCESS) {
    fail(DecodingError::Case::typeMismatch,
         std::string("a number, not ") + typeName(element_.type()));
  }
  return value;
}

bool JsonNode::boolean() const {
  bool value = false;
  if (element_.get_bool().get(value) != simdjson::SUCCESS) {
    fail(DecodingError::Case::typeMismatch,
         std::string("true or false, not ") + typeName(element_.type()));
  }
  return value;
}

Uuid JsonNode::uuid() const {
  const std::string_view text = string();
  const auto id = Uuid::parse(text);
  if (!id) fail(DecodingError::Case::invalidValue, "“" + std::string(text) + "” is not a UUID.");
  return *id;
}

JsonObject JsonNode::object() const {
  simdjson::dom::object object;
  if (element_.get_object().get(object) != simdjson::SUCCESS) {
    fail(DecodingError::Case::typeMismatch,
         std::string("an object, not ") + typeName(element_.type()));
  }
  return {object, *this};
}

simdjson::dom::array JsonNode::array() const {
  simdjson::dom::array array;
  if (element_.get_array().get(array) != simdjson::SUCCESS) {
    fail(DecodingError::Case::typeMismatch,
         std::string("a list, not ") + typeName(element_.type()));
  }
  return array;
}

namespace {

// Keys are short; comparing them in place beats a call to memcmp for each.
bool sameKey(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

bool keysAreSorted(simdjson::dom::object object) {
  std::string_view previous;
  bool first = true;
  for (const auto field : object) {
    if (!first && !(previous < field.key)) return false;
    previous = field.key;
    first = false;
  }
  return true;
}

}  // namespace

JsonObject::JsonObject(simdjson::dom::object object, const JsonNode& node)
    : object_(object), node_(&node), next_(object.begin()) {}

bool JsonObject::isSorted() const {
  if (!isSorted_) isSorted_ = keysAreSorted(object_);
  return *isSorted_;
}

std::optional<simdjson::dom::element> JsonObject::find(std::string_view key) const {
  for (auto at = next_; at != object_.end(); ++at) {
    const std::string_view candidate = at.key();
    if (sameKey(candidate, key)) {
      lastFound_ = candidate;
      next_ = at;
      ++next_;
      return at.value();
    }
    if (key < candidate) break;
  }
  // In a sorted object a key after the last one found would have turned up above.
  if (isSorted() && (next_ == object_.begin() || lastFound_ < key)) return std::nullopt;
  simdjson::dom::element value;
  if (object_.at_key(key).get(value) != simdjson::SUCCESS) return std::nullopt;
  return value;
}

JsonNode JsonObject::required(std::string_view key) const {
  const auto value = find(key);
  if (!value) {
    JsonNode(simdjson::dom::element(), node_, key).fail(DecodingError::Case::keyNotFound, "");
  }
  return {*value, node_, key};
}

std::optional<JsonNode> JsonObject::optional(std::string_view key) const {
  const auto value = find(key);
  if (!value || value->is_null()) return std::nullopt;
  return JsonNode(*value, node_, key);
}

bool JsonObject::contains(std::string_view key) const { return find(key).has_value(); }

JsonDocument::JsonDocument(const std::string& text) {
  parse(text.data(), text.size(), text.capacity() >= text.size() + simdjson::SIMDJSON_PADDING);
}

JsonDocument::JsonDocument(std::string_view text) { parse(text.data(), text.size(), false); }

JsonDocument::~JsonDocument() { returnParser(std::move(parser_)); }

void JsonDocument::parse(const char* data, std::size_t size, bool hasPadding) {
  parser_ = borrowParser();
  simdjson::dom::element root;
  const auto error = parser_->parse(data, size, !hasPadding).get(root);
  if (error != simdjson::SUCCESS) {
    throw DecodingError(DecodingError::Case::invalidJson, "", simdjson::error_message(error));
  }
  root_.emplace(root, nullptr, std::string_view());
}

}  // namespace brindlet

#pragma once

#include <simdjson.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/BrindletError.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// JSON that can't be read as the value expected of it.
class DecodingError : public BrindletError {
 public:
  enum class Case { invalidJson, keyNotFound, typeMismatch, invalidValue };
  DecodingError(Case which, std::string path, std::string detail);
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string description() const override;

 private:
  Case case_;
  std::string path_;
  std::string detail_;
};

class JsonObject;

/// One value inside a parsed document. It knows where it stands ("tasks[2].title") for error
/// messages by pointing at its parent, so a node must not outlive the node it came from.
class JsonNode {
 public:
  JsonNode(simdjson::dom::element element, const JsonNode* parent, std::string_view key,
           std::size_t index = 0);

  [[nodiscard]] bool isNull() const { return element_.is_null(); }
  [[nodiscard]] std::string_view string() const;
  /// A whole number; a number with a zero fraction counts as whole.
  [[nodiscard]] std::int64_t integer() const;
  [[nodiscard]] double number() const;
  [[nodiscard]] bool boolean() const;
  /// Canonical UUID text in either case.
  [[nodiscard]] Uuid uuid() const;
  /// A number of seconds since 2001-01-01T00:00:00Z.
  [[nodiscard]] Instant instant() const { return Instant(number()); }
  [[nodiscard]] JsonObject object() const;

  /// Calls `visit(const JsonNode&)` on each element of an array, in order.
  template <typename Visit>
  void forEachElement(Visit&& visit) const {
    std::size_t index = 0;
    for (const simdjson::dom::element item : array()) {
      visit(JsonNode(item, this, {}, index++));
    }
  }
  /// The elements of an array, each decoded by `decode(const JsonNode&)`.
  template <typename Decode>
  auto list(Decode&& decode) const {
    const simdjson::dom::array items = array();
    std::vector<decltype(decode(*this))> result;
    result.reserve(items.size());
    forEachElement([&](const JsonNode& item) { result.push_back(decode(item)); });
    return result;
  }

  /// Where this node stands in the document, such as "tasks[2].title".
  [[nodiscard]] std::string path() const;
  /// Fails with a DecodingError of this node's path.
  [[noreturn]] void fail(DecodingError::Case which, std::string detail) const;

 private:
  [[nodiscard]] simdjson::dom::array array() const;

  simdjson::dom::element element_;
  const JsonNode* parent_;
  std::string_view key_;
  std::size_t index_;
};

/// A JSON object, read by key.
class JsonObject {
 public:
  JsonObject(simdjson::dom::object object, const JsonNode& node);

  /// The value of a key that must be there; null is a value of the wrong type.
  [[nodiscard]] JsonNode required(std::string_view key) const;
  /// The value of a key that may be left out; a missing key and null both give absent.
  [[nodiscard]] std::optional<JsonNode> optional(std::string_view key) const;
  /// A key that is there at all, null included.
  [[nodiscard]] bool contains(std::string_view key) const;

 private:
  [[nodiscard]] std::optional<simdjson::dom::element> find(std::string_view key) const;

  simdjson::dom::object object_;
  const JsonNode* node_;
  [[nodiscard]] bool isSorted() const;

  // Decoders ask for keys in sorted order, the order files keep them in, so the search goes on
  // from the last key found. A key that isn't there is known absent at the first key past it,
  // once the object has been seen to be sorted; that is checked only when it matters.
  mutable std::optional<bool> isSorted_;
  mutable simdjson::dom::object::iterator next_;
  mutable std::string_view lastFound_;
};

/// A parsed JSON text. Owns the parser's memory, which every node points into.
class JsonDocument {
 public:
  /// Parses JSON text; fails with DecodingError::Case::invalidJson. Text whose string capacity
  /// leaves room for the parser's padding is read in place, without a copy.
  explicit JsonDocument(const std::string& text);
  explicit JsonDocument(std::string_view text);
  ~JsonDocument();
  JsonDocument(const JsonDocument&) = delete;
  JsonDocument& operator=(const JsonDocument&) = delete;

  [[nodiscard]] const JsonNode& root() const { return *root_; }

 private:
  void parse(const char* data, std::size_t size, bool hasPadding);

  std::unique_ptr<simdjson::dom::parser> parser_;
  std::optional<JsonNode> root_;
};

}  // namespace brindlet

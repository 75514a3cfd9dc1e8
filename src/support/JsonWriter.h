#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/BrindletError.h"

namespace brindlet {

/// A value that JSON can't hold, such as a number that isn't finite.
class EncodingError : public BrindletError {
 public:
  explicit EncodingError(std::string reason) : reason_(std::move(reason)) {}
  [[nodiscard]] std::string description() const override;

 private:
  std::string reason_;
};

/// Writes JSON text front to back, keys in the order given. Pretty output indents by two
/// spaces; compact output has no white space at all.
class JsonWriter {
 public:
  enum class Style { pretty, compact };

  explicit JsonWriter(Style style = Style::pretty);

  /// Makes room for `bytes` of text ahead, so that a long text isn't moved again and again as
  /// it grows. Room that stays unused is never touched.
  void reserve(std::size_t bytes) { out_.reserve(bytes); }

  JsonWriter& beginObject();
  JsonWriter& endObject();
  JsonWriter& beginArray();
  JsonWriter& endArray();
  /// The key of the next value inside an object.
  JsonWriter& key(std::string_view name);

  JsonWriter& string(std::string_view text);
  JsonWriter& integer(std::int64_t value);
  /// The shortest text that reads back as the same double; fails for NaN and infinities.
  JsonWriter& number(double value);
  JsonWriter& boolean(bool value);
  JsonWriter& null();

  /// The text written so far; complete once every object and array is closed.
  [[nodiscard]] const std::string& text() const { return out_; }
  [[nodiscard]] std::string take() { return std::move(out_); }

 private:
  void beforeValue();
  void newline();
  JsonWriter& close(char bracket);

  struct Level {
    bool isObject;
    bool isEmpty;
  };

  Style style_;
  std::string out_;
  std::vector<Level> levels_;
  bool afterKey_ = false;
};

}  // namespace brindlet

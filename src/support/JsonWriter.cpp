#include "support/JsonWriter.h"

#include <charconv>
#include <cmath>

namespace brindlet {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

void appendEscaped(std::string& out, std::string_view text) {
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\b':
        out += "\\b";
        break;
      case '\f':
        out += "\\f";
        break;
      default:
        if (byte < 0x20) {
          out += "\\u00";
          out += kHexDigits[byte >> 4];
          out += kHexDigits[byte & 0xF];
        } else {
          out += c;
        }
    }
  }
  out += '"';
}

}  // namespace

std::string EncodingError::description() const {
  return "The data could not be written: " + reason_;
}

JsonWriter::JsonWriter(Style style) : style_(style) {}

void JsonWriter::newline() {
  if (style_ == Style::compact) return;
  out_ += '\n';
  out_.append(levels_.size() * 2, ' ');
}

void JsonWriter::beforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (levels_.empty()) return;
  Level& level = levels_.back();
  if (!level.isEmpty) out_ += ',';
  level.isEmpty = false;
  newline();
}

JsonWriter& JsonWriter::beginObject() {
  beforeValue();
  out_ += '{';
  levels_.push_back({true, true});
  return *this;
}

JsonWriter& JsonWriter::beginArray() {
  beforeValue();
  out_ += '[';
  levels_.push_back({false, true});
  return *this;
}

JsonWriter& JsonWriter::endObject() { return close('}'); }
JsonWriter& JsonWriter::endArray() { return close(']'); }

JsonWriter& JsonWriter::close(char bracket) {
  const bool wasEmpty = levels_.back().isEmpty;
  levels_.pop_back();
  if (!wasEmpty) newline();
  out_ += bracket;
  return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  beforeValue();
  appendEscaped(out_, name);
  out_ += style_ == Style::pretty ? ": " : ":";
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::string(std::string_view text) {
  beforeValue();
  appendEscaped(out_, text);
  return *this;
}

JsonWriter& JsonWriter::integer(std::int64_t value) {
  beforeValue();
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out_.append(buffer, result.ptr);
  return *this;
}

JsonWriter& JsonWriter::number(double value) {
  if (!std::isfinite(value)) throw EncodingError("a number is not finite.");
  beforeValue();
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out_.append(buffer, result.ptr);
  return *this;
}

JsonWriter& JsonWriter::boolean(bool value) {
  beforeValue();
  out_ += value ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::null() {
  beforeValue();
  out_ += "null";
  return *this;
}

}  // namespace brindlet

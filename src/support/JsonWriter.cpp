#include "support/JsonWriter.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace brindlet {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

bool needsEscape(char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20; }

// Whether any of eight bytes may need escaping: one below 0x20, a quote or a backslash. A
// borrow can flag a byte falsely only above one that truly matches, so "none" is exact.
bool mayNeedEscape(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
  const auto hasByteBelow = [&](std::uint64_t value, std::uint64_t limit) {
    return ((value - kOnes * limit) & ~value & kHighBits) != 0;
  };
  return hasByteBelow(word, 0x20) || hasByteBelow(word ^ (kOnes * '"'), 1) ||
         hasByteBelow(word ^ (kOnes * '\\'), 1);
}

// The length of the leading run of `text` that stands for itself in JSON.
std::size_t plainRun(std::string_view text) {
  std::size_t run = 0;
  for (std::uint64_t word = 0; run + sizeof word <= text.size(); run += sizeof word) {
    std::memcpy(&word, text.data() + run, sizeof word);
    if (mayNeedEscape(word)) break;
  }
  while (run < text.size() && !needsEscape(text[run])) ++run;
  return run;
}

void appendEscaped(std::string& out, std::string_view text) {
  out += '"';
  // Runs of characters that stand for themselves are appended whole; plans are mostly such
  // text, and the state file is written whole at every change.
  while (!text.empty()) {
    const std::size_t run = plainRun(text);
    out.append(text.data(), run);
    if (run == text.size()) break;
    const char c = text[run];
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
        out += "\\u00";
        out += kHexDigits[byte >> 4];
        out += kHexDigits[byte & 0xF];
    }
    text.remove_prefix(run + 1);
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

#include "support/JsonWriter.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace brindlet {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
// Whole doubles from here on are written with an exponent; below it they fit in 64 bits.
constexpr double kLargestPlainWholeNumber = 1e18;

bool needsEscape(unsigned char byte) { return byte < 0x20 || byte == '"' || byte == '\\'; }

void appendEscapedByte(std::string& out, char c) {
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
    default: {
      const auto byte = static_cast<unsigned char>(c);
      const char escape[] = {'\\', 'u', '0', '0', kHexDigits[byte >> 4], kHexDigits[byte & 0xF]};
      out.append(escape, sizeof escape);
    }
  }
}

// Whether any of eight bytes is a control character, a quote or a backslash.
bool wordNeedsEscape(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
  const auto hasZeroByte = [](std::uint64_t v) { return ((v - kOnes) & ~v & kHighBits) != 0; };
  const bool hasControl = ((word - kOnes * 0x20) & ~word & kHighBits) != 0;
  return hasControl || hasZeroByte(word ^ (kOnes * '"')) || hasZeroByte(word ^ (kOnes * '\\'));
}

// Copies runs of plain bytes whole, eight at a time where it can; only the bytes JSON forbids
// in a string are escaped. Notes and titles are long and almost never need escapes.
void appendEscaped(std::string& out, std::string_view text) {
  out += '"';
  std::size_t runStart = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i + 8 <= text.size()) {
      std::uint64_t word = 0;
      std::memcpy(&word, text.data() + i, sizeof word);
      if (!wordNeedsEscape(word)) {
        i += 7;
        continue;
      }
    }
    if (!needsEscape(static_cast<unsigned char>(text[i]))) continue;
    out.append(text.data() + runStart, i - runStart);
    appendEscapedByte(out, text[i]);
    runStart = i + 1;
  }
  out.append(text.data() + runStart, text.size() - runStart);
  out += '"';
}

}  // namespace

std::string EncodingError::description() const {
  return "The data could not be written: " + reason_;
}

JsonWriter::JsonWriter(Style style, std::size_t expectedSize) : style_(style) {
  out_.reserve(expectedSize);
}

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
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  // A large whole double comes out as a long run of digits, which readers take for an integer
  // too big for 64 bits and refuse; the exponent form reads back as the same double.
  if (std::fabs(value) >= kLargestPlainWholeNumber &&
      std::string_view(buffer, result.ptr).find_first_of(".e") == std::string_view::npos) {
    result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  }
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

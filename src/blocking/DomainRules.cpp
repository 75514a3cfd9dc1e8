#include "blocking/DomainRules.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <set>

#include "support/Text.h"

namespace brindlet {

std::string DomainRuleError::description() const {
  switch (case_) {
    case Case::empty:
      return "Enter a domain such as example.com.";
    case Case::credentialsNotAllowed:
      return "Credentials are not allowed in a blocked address.";
    case Case::ipAddressNotAllowed:
      return "Enter a domain name, not an IP address.";
    case Case::invalidHost:
      return "That domain is not valid.";
  }
  return "That domain is not valid.";
}

namespace {

constexpr std::size_t kMaxHostLength = 253;
constexpr std::size_t kMaxLabelLength = 63;

// Owns what uriparser allocates for one parsed address.
class ParsedUri {
 public:
  ParsedUri() = default;
  ParsedUri(const ParsedUri&) = delete;
  ParsedUri& operator=(const ParsedUri&) = delete;
  ~ParsedUri() { uriFreeUriMembersA(&uri_); }

  /// Whether the whole text is one address of RFC 3986.
  bool parse(std::string_view text) {
    const char* errorPosition = nullptr;
    return uriParseSingleUriExA(&uri_, text.data(), text.data() + text.size(), &errorPosition) ==
           URI_SUCCESS;
  }

  /// A user info part, even an empty one before "@".
  [[nodiscard]] bool hasUserInfo() const { return uri_.userInfo.first != nullptr; }
  [[nodiscard]] bool hasHost() const { return uri_.hostText.first != nullptr; }
  /// The host as written, without the brackets of an IPv6 literal.
  [[nodiscard]] std::string_view hostText() const {
    return {uri_.hostText.first,
            static_cast<std::size_t>(uri_.hostText.afterLast - uri_.hostText.first)};
  }

 private:
  UriUriA uri_{};
};

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// A registered name may hold percent escapes; the name meant is the decoded one. The parser
// has already refused a "%" that isn't followed by two hex digits.
std::string percentDecoded(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
        hexValue(text[i + 2]) >= 0) {
      decoded.push_back(static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2])));
      i += 2;
    } else {
      decoded.push_back(text[i]);
    }
  }
  return decoded;
}

bool isAsciiLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

char asciiLowercase(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

// A decimal whole number with an optional sign, as a person would write an address part.
std::optional<std::int64_t> signedDecimal(std::string_view text) {
  std::string_view digits = text;
  bool negative = false;
  if (!digits.empty() && (digits.front() == '+' || digits.front() == '-')) {
    negative = digits.front() == '-';
    digits.remove_prefix(1);
  }
  if (digits.empty()) return std::nullopt;
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return negative ? -value : value;
}

std::vector<std::string_view> split(std::string_view text, char separator, bool keepEmpty) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = text.find(separator, start);
    const std::string_view piece =
        text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
    if (keepEmpty || !piece.empty()) pieces.push_back(piece);
    if (end == std::string_view::npos) return pieces;
    start = end + 1;
  }
}

bool isIPAddress(std::string_view host) {
  // Anything with a colon can only be an IPv6 literal here.
  if (host.find(':') != std::string_view::npos) return true;
  const std::vector<std::string_view> pieces = split(host, '.', false);
  if (pieces.size() != 4) return false;
  return std::all_of(pieces.begin(), pieces.end(), [](std::string_view piece) {
    const auto value = signedDecimal(piece);
    return value && *value >= 0 && *value <= 255;
  });
}

bool isValidLabel(std::string_view label) {
  if (label.empty() || label.size() > kMaxLabelLength) return false;
  if (label.front() == '-' || label.back() == '-') return false;
  return std::all_of(label.begin(), label.end(),
                     [](char c) { return isAsciiLetterOrDigit(c) || c == '-'; });
}

bool isValidHostname(std::string_view host) {
  if (host.size() > kMaxHostLength) return false;
  if (host.find('.') == std::string_view::npos) return false;
  if (host.find("..") != std::string_view::npos) return false;
  const std::vector<std::string_view> labels = split(host, '.', true);
  return std::all_of(labels.begin(), labels.end(), isValidLabel);
}

}  // namespace

namespace DomainRules {

std::string normalize(std::string_view userText) {
  const std::string_view trimmed = trimmedWhitespace(userText);
  if (trimmed.empty()) throw DomainRuleError(DomainRuleError::Case::empty);
  // Wildcards are refused before the parser can say anything about them.
  if (trimmed.find('*') != std::string_view::npos) {
    throw DomainRuleError(DomainRuleError::Case::invalidHost);
  }
  // The scheme only lets the parser find the host; which scheme it is doesn't matter.
  const std::string address = trimmed.find("://") != std::string_view::npos
                                  ? std::string(trimmed)
                                  : "https://" + std::string(trimmed);

  // Text that doesn't parse reports the credentials message too: an address with an inner blank
  // most often comes from pasting "user name@site".
  ParsedUri uri;
  if (!uri.parse(address) || uri.hasUserInfo()) {
    throw DomainRuleError(DomainRuleError::Case::credentialsNotAllowed);
  }
  if (!uri.hasHost()) throw DomainRuleError(DomainRuleError::Case::invalidHost);

  std::string host = percentDecoded(uri.hostText());
  std::transform(host.begin(), host.end(), host.begin(), asciiLowercase);
  while (!host.empty() && host.back() == '.') host.pop_back();
  // Only the one prefix goes; every other sub-domain is a site of its own.
  if (host.starts_with("www.")) host.erase(0, 4);

  if (host.empty()) throw DomainRuleError(DomainRuleError::Case::invalidHost);
  if (isIPAddress(host)) throw DomainRuleError(DomainRuleError::Case::ipAddressNotAllowed);
  if (!isValidHostname(host)) throw DomainRuleError(DomainRuleError::Case::invalidHost);
  return host;
}

std::vector<std::string> expandedHosts(const std::vector<std::string>& domains) {
  std::set<std::string> hosts;
  for (const std::string& domain : domains) hosts.insert(normalize(domain));
  // Stored domains never keep their "www.", so both forms are blocked.
  std::vector<std::string> expanded;
  expanded.reserve(hosts.size() * 2);
  for (const std::string& host : hosts) {
    expanded.push_back(host);
    expanded.push_back("www." + host);
  }
  return expanded;
}

}  // namespace DomainRules

}  // namespace brindlet

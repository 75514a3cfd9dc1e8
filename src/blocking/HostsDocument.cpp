#include "blocking/HostsDocument.h"

#include <algorithm>

namespace brindlet {

std::string HostsDocumentError::description() const {
  return "Brindlet found malformed managed markers and left the hosts file unchanged.";
}

namespace {

constexpr std::string_view kLoopbackAddress = "127.0.0.1";

struct Occurrences {
  std::size_t count = 0;
  std::size_t first = std::string_view::npos;
};

// Every place the marker stands, anywhere in a line; a later search starts behind a match.
Occurrences occurrencesOf(std::string_view text, std::string_view marker) {
  Occurrences found;
  for (std::size_t at = text.find(marker); at != std::string_view::npos;
       at = text.find(marker, at + marker.size())) {
    if (found.count++ == 0) found.first = at;
  }
  return found;
}

// A line feed that ends a line on its own. The pair CR LF is one line end and is never split,
// so that a file with CRLF line ends keeps them whole around the block.
bool isLoneLineFeedAt(std::string_view text, std::size_t position) {
  if (position >= text.size() || text[position] != '\n') return false;
  return position == 0 || text[position - 1] != '\r';
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  std::size_t at = 0;
  while (at < line.size()) {
    while (at < line.size() && isBlank(line[at])) ++at;
    const std::size_t start = at;
    while (at < line.size() && !isBlank(line[at])) ++at;
    if (at > start) fields.push_back(line.substr(start, at - start));
  }
  return fields;
}

}  // namespace

std::optional<HostsDocument::Range> HostsDocument::managedRange() const {
  const Occurrences begins = occurrencesOf(source_, beginMarker);
  const Occurrences ends = occurrencesOf(source_, endMarker);
  if (begins.count != ends.count || begins.count > 1) throw HostsDocumentError();
  if (begins.count == 0) return std::nullopt;
  if (begins.first >= ends.first) throw HostsDocumentError();
  return Range{begins.first, ends.first + endMarker.size()};
}

std::string HostsDocument::removingManagedBlock() const { return withoutBlock(0); }

std::string HostsDocument::withoutBlock(std::size_t spareCapacity) const {
  const std::optional<Range> range = managedRange();
  if (!range) {
    std::string copy;
    copy.reserve(source_.size() + spareCapacity);
    copy.append(source_);
    return copy;
  }
  std::size_t lower = range->lower;
  std::size_t upper = range->upper;
  const bool tookPrecedingLineFeed = lower > 0 && isLoneLineFeedAt(source_, lower - 1);
  if (tookPrecedingLineFeed) --lower;
  // Between two lines of the user's, one line feed must remain to keep them apart.
  if (isLoneLineFeedAt(source_, upper)) {
    const std::size_t behind = upper + 1;
    if (!tookPrecedingLineFeed || behind == source_.size()) upper = behind;
  }
  std::string result;
  result.reserve(source_.size() - (upper - lower) + spareCapacity);
  result.append(source_, 0, lower);
  result.append(source_, upper, std::string::npos);
  // Text on both sides of the block may join into a marker once the block is gone, as in
  // "# B" + block + "EGIN BRINDLET ...". Such a file could never be read again, so it is
  // refused like any other malformed one. Only a marker across the joint can be new.
  const std::size_t reach = std::max(beginMarker.size(), endMarker.size()) - 1;
  const std::size_t from = lower > reach ? lower - reach : 0;
  const std::string_view joint = std::string_view(result).substr(from, 2 * reach);
  if (joint.find(beginMarker) != std::string_view::npos ||
      joint.find(endMarker) != std::string_view::npos) {
    throw HostsDocumentError();
  }
  return result;
}

std::string HostsDocument::applying(const std::vector<std::string>& hosts) const {
  const std::set<std::string> sorted(hosts.begin(), hosts.end());
  std::size_t blockSize = beginMarker.size() + endMarker.size() + 3;
  for (const std::string& host : sorted) blockSize += kLoopbackAddress.size() + host.size() + 2;

  // The base gets room for the block up front, so the large text is copied only once.
  std::string result = withoutBlock(blockSize);
  // A base that already ends in a line feed gets a blank line before the block; removing the
  // block takes exactly that line feed away again, so the user's bytes come back unchanged.
  if (!result.empty()) result.push_back('\n');
  result.append(beginMarker).push_back('\n');
  for (const std::string& host : sorted) {
    result.append(kLoopbackAddress).append(" ").append(host).push_back('\n');
  }
  result.append(endMarker).push_back('\n');
  return result;
}

std::set<std::string> HostsDocument::managedHosts() const {
  std::set<std::string> hosts;
  const std::optional<Range> range = managedRange();
  if (!range) return hosts;
  const std::string_view block =
      std::string_view(source_).substr(range->lower, range->upper - range->lower);
  std::size_t start = 0;
  while (start <= block.size()) {
    std::size_t end = block.find('\n', start);
    if (end == std::string_view::npos) end = block.size();
    // Marker lines, comments and hand-made lines for other addresses are passed over.
    const std::vector<std::string_view> fields = fieldsOf(block.substr(start, end - start));
    if (fields.size() == 2 && fields[0] == kLoopbackAddress) hosts.emplace(fields[1]);
    start = end + 1;
  }
  return hosts;
}

}  // namespace brindlet

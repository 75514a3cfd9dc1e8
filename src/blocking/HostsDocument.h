#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/BrindletError.h"

namespace brindlet {

/// Markers of the managed block that can't be read as exactly one block.
class HostsDocumentError : public BrindletError {
 public:
  enum class Case { malformedManagedMarkers };

  explicit HostsDocumentError(Case which = Case::malformedManagedMarkers) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const HostsDocumentError& a, const HostsDocumentError& b) {
    return a.case_ == b.case_;
  }

 private:
  Case case_;
};

/// The text of a hosts file and the one block of lines in it that Brindlet owns. Every other
/// byte of the file is the user's and comes back exactly as it was. Does no file access.
class HostsDocument {
 public:
  static constexpr std::string_view beginMarker = "# BEGIN BRINDLET MANAGED BLOCK";
  static constexpr std::string_view endMarker = "# END BRINDLET MANAGED BLOCK";

  explicit HostsDocument(std::string source) : source_(std::move(source)) {}

  [[nodiscard]] const std::string& source() const { return source_; }

  /// The whole text with the block holding exactly `hosts` (each once, sorted), at the end of
  /// the file. Fails with HostsDocumentError and then nothing may be written.
  [[nodiscard]] std::string applying(const std::vector<std::string>& hosts) const;
  /// The whole text without the block and the line break that set it apart.
  [[nodiscard]] std::string removingManagedBlock() const;
  /// The names that the block sends to 127.0.0.1; empty when there is no block.
  [[nodiscard]] std::set<std::string> managedHosts() const;

 private:
  struct Range {
    std::size_t lower;
    std::size_t upper;
  };

  /// From the first character of the begin marker to behind the end marker.
  [[nodiscard]] std::optional<Range> managedRange() const;
  /// The text without the block, with room for `spareCapacity` more characters.
  [[nodiscard]] std::string withoutBlock(std::size_t spareCapacity) const;

  std::string source_;
};

}  // namespace brindlet

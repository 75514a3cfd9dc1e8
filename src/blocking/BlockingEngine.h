#pragma once

#include <string>
#include <vector>

#include "records/EnumText.h"

namespace brindlet {

/// How the hosts file stands against the hosts that should be blocked.
enum class BlockingStatus {
  /// No managed hosts in the file, and none expected.
  inactive,
  /// The file's managed hosts are exactly the expected ones.
  active,
  /// The two differ.
  mismatch,
  /// The file can't be read, or its markers are malformed.
  unreadable,
};

inline constexpr EnumText<BlockingStatus, 4> kBlockingStatusText{{{
    {BlockingStatus::inactive, "inactive"},
    {BlockingStatus::active, "active"},
    {BlockingStatus::mismatch, "mismatch"},
    {BlockingStatus::unreadable, "unreadable"},
}}};

/// Makes the system block exactly a list of host names, or none, and tells how things stand.
/// Calls block while the administrator is asked for approval.
class BlockingEngine {
 public:
  virtual ~BlockingEngine() = default;

  /// Blocks exactly these final host names (already normalised and expanded). Fails with
  /// BlockingError or HostsDocumentError.
  virtual void apply(const std::vector<std::string>& hosts) = 0;
  /// Blocks nothing any more. Fails with BlockingError or HostsDocumentError.
  virtual void remove() = 0;
  /// Never fails: a file that can't be read is `unreadable`.
  [[nodiscard]] virtual BlockingStatus status(const std::vector<std::string>& expectedHosts) = 0;
};

}  // namespace brindlet

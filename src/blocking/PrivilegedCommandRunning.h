#pragma once

#include <filesystem>

namespace brindlet {

/// The one privileged act of the program: put a prepared file in place of a system file, with
/// the administrator's approval. Both calls may block until the approval is answered, and fail
/// with BlockingError; a refusal by the user is `authorizationCancelled`, told apart from any
/// other failure.
class PrivilegedCommandRunning {
 public:
  virtual ~PrivilegedCommandRunning() = default;

  /// Makes `destination` a root-owned, world-readable copy of `source`.
  virtual void replace(const std::filesystem::path& source,
                       const std::filesystem::path& destination) = 0;
  /// Makes the system forget cached name look-ups.
  virtual void refreshDNS() = 0;
};

}  // namespace brindlet

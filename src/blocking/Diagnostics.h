#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "blocking/BlockingEngine.h"
#include "blocking/DiagnosticsSnapshot.h"

namespace brindlet {

/// The health report of website blocking: whether the hosts file is as expected and, if not,
/// what to do. Reads through the blocker's status and changes nothing.
class Diagnostics {
 public:
  Diagnostics(std::shared_ptr<BlockingEngine> blocker, std::filesystem::path backupDirectory);

  /// Never fails: a file that can't be read is itself part of the report.
  [[nodiscard]] DiagnosticsSnapshot snapshot(const std::vector<std::string>& expectedHosts) const;

 private:
  std::shared_ptr<BlockingEngine> blocker_;
  std::filesystem::path backupDirectory_;
};

}  // namespace brindlet

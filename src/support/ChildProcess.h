#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace brindlet {

/// How a finished child process ended, with what it wrote to standard error.
struct ChildProcessResult {
  /// The exit status; 128 plus the signal number for a process that a signal ended.
  int exitStatus = 0;
  std::string standardError;
};

/// Starts `program` with `arguments` (not counting the program itself) and the current
/// environment, collects its standard error through a pipe and waits until it has exited.
/// Standard input and output are shared with this process. Fails with SystemError when the
/// process can't be started.
[[nodiscard]] ChildProcessResult runChildProcess(const std::filesystem::path& program,
                                                 const std::vector<std::string>& arguments);

}  // namespace brindlet

#include "blocking/LinuxPrivilegedCommandRunner.h"

#include "blocking/BlockingError.h"
#include "blocking/ShellCommand.h"
#include "support/BrindletError.h"
#include "support/ChildProcess.h"

namespace brindlet {
namespace {

constexpr std::string_view kShell = "/bin/sh";

}  // namespace

LinuxPrivilegedCommandRunner::LinuxPrivilegedCommandRunner(Options options)
    : options_(std::move(options)) {}

std::string LinuxPrivilegedCommandRunner::commandPlan(const std::filesystem::path& source,
                                                      const std::filesystem::path& destination,
                                                      const Options& options) {
  std::string command;
  command += "src=" + shellQuoted(source.string()) + "; dst=" + shellQuoted(destination.string());
  command +=
      "; if [ -L \"$src\" ] || [ ! -f \"$src\" ]; then"
      " echo \"The replacement is not a regular file.\" >&2; exit 1; fi";
  // The file is opened once and then compared, without following links, with what the path
  // names now; a swap between the check above and the opening is caught here.
  command += "; exec 3<\"$src\" || exit 1";
  command +=
      "; if [ \"$(/usr/bin/stat -c %d:%i -- \"$src\")\" != "
      "\"$(/usr/bin/stat -L -c %d:%i /dev/stdin <&3)\" ]; then"
      " echo \"The replacement changed while it was being copied.\" >&2; exit 1; fi";
  // Writing over the destination keeps the file's identity, as a copy with cp would.
  command += "; /bin/cat <&3 >\"$dst\"";
  if (options.setsRootOwner) command += " && /bin/chown root:root \"$dst\"";
  command += " && /bin/chmod 644 \"$dst\" || exit 1";
  if (!options.nameCacheFlushCommand.empty()) {
    command += "; { " + options.nameCacheFlushCommand + "; } || exit " +
               std::to_string(kNameCacheFlushFailedStatus);
  }
  return command;
}

void LinuxPrivilegedCommandRunner::replace(const std::filesystem::path& source,
                                           const std::filesystem::path& destination) {
  flushFailure_.reset();
  const std::string command = commandPlan(source, destination, options_);
  ChildProcessResult result;
  try {
    result = options_.pkexecPath
                 ? runChildProcess(*options_.pkexecPath, {std::string(kShell), "-c", command})
                 : runChildProcess(kShell, {"-c", command});
  } catch (const SystemError& error) {
    throw BlockingError::writeFailed(systemErrorText(error.errorNumber()));
  }
  if (result.exitStatus == 0) return;
  if (options_.pkexecPath && result.exitStatus == kApprovalDismissedStatus) {
    throw BlockingError::authorizationCancelled();
  }
  if (result.exitStatus == kNameCacheFlushFailedStatus) {
    // The file is in place; the engine hears of the flush when it asks for the refresh.
    flushFailure_ = standardErrorText(result.standardError);
    return;
  }
  throw BlockingError::writeFailed(standardErrorText(result.standardError));
}

void LinuxPrivilegedCommandRunner::refreshDNS() {
  if (!flushFailure_) return;
  std::string failure = std::move(*flushFailure_);
  flushFailure_.reset();
  throw BlockingError::dnsRefreshFailed(std::move(failure));
}

}  // namespace brindlet

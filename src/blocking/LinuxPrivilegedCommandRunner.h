#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "blocking/PrivilegedCommandRunning.h"

namespace brindlet {

/// Replaces a system file on Linux with one shell command run as root: through polkit's
/// pkexec, which asks for approval each time, or straight through /bin/sh when this process is
/// root already. The same command flushes the name cache, so a single approval covers it all.
class LinuxPrivilegedCommandRunner : public PrivilegedCommandRunning {
 public:
  /// Flushes the cache of whichever name service runs: systemd-resolved or nscd, else nothing.
  static constexpr std::string_view kDetectedNameCacheFlush =
      "if [ -S /run/systemd/resolve/io.systemd.Resolve ]; then /usr/bin/resolvectl "
      "flush-caches; elif [ -S /run/nscd/socket ] || [ -S /var/run/nscd/socket ]; then "
      "/usr/sbin/nscd -i hosts; fi";
  /// The exit status of the command when the file is in place and only the flush failed.
  static constexpr int kNameCacheFlushFailedStatus = 75;
  /// pkexec's exit status when the user dismissed the approval dialog.
  static constexpr int kApprovalDismissedStatus = 126;

  struct Options {
    /// The polkit helper that asks for approval and runs /bin/sh as root; absent when this
    /// process is root and runs /bin/sh itself.
    std::optional<std::filesystem::path> pkexecPath;
    /// Whether the copy is handed to root; only a test that can't be root turns it off.
    bool setsRootOwner = true;
    /// Shell text, run as root after the copy, that makes the system forget cached look-ups.
    std::string nameCacheFlushCommand = std::string(kDetectedNameCacheFlush);
  };

  explicit LinuxPrivilegedCommandRunner(Options options);

  /// The shell command that makes `destination` a root-owned copy of `source` with mode 644 and
  /// then flushes the name cache. It refuses a source that is a symbolic link or no regular
  /// file, and one that was swapped while it was being opened, so that an approval for the
  /// hosts file can't be turned into a root copy of some other file.
  [[nodiscard]] static std::string commandPlan(const std::filesystem::path& source,
                                               const std::filesystem::path& destination,
                                               const Options& options);

  [[nodiscard]] const Options& options() const { return options_; }

  /// Fails with `authorizationCancelled` when the user dismissed the dialog, and otherwise with
  /// `writeFailed` and what the command wrote to standard error.
  void replace(const std::filesystem::path& source,
               const std::filesystem::path& destination) override;
  /// The flush already ran inside `replace`; this reports a failure of it, if there was one.
  void refreshDNS() override;

 private:
  Options options_;
  std::optional<std::string> flushFailure_;
};

}  // namespace brindlet

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "blocking/PrivilegedCommandRunning.h"

namespace brindlet {

/// Replaces a system file on macOS with one shell command run through osascript "with
/// administrator privileges", which shows the system's password or Touch ID dialog each time.
/// The same command flushes the DNS cache, so a single approval covers it all.
class MacOSPrivilegedCommandRunner : public PrivilegedCommandRunning {
 public:
  MacOSPrivilegedCommandRunner() = default;
  /// Runs a stand-in for osascript, for checking the process handling where there is none.
  explicit MacOSPrivilegedCommandRunner(std::filesystem::path osascriptPath)
      : osascriptPath_(std::move(osascriptPath)) {}

  /// The one-line command that copies, hands the file to root:wheel, sets mode 644 and flushes
  /// the DNS cache, stopping at the first failing step.
  [[nodiscard]] static std::string commandPlan(std::string_view replacementPath,
                                               std::string_view destinationPath);
  /// The text as one word of a shell command.
  [[nodiscard]] static std::string shellQuote(std::string_view text);
  /// The text inside an AppleScript string literal: backslashes doubled first, then each
  /// double quote preceded by a backslash.
  [[nodiscard]] static std::string appleScriptEscaped(std::string_view text);
  /// What an ended osascript run means: nothing for status 0, else `authorizationCancelled`
  /// when the error text speaks of cancelling, else `writeFailed` with the trimmed text.
  static void checkOutcome(int exitStatus, std::string_view errorBytes);

  /// Runs the shell command with administrator privileges, waiting for the user's answer
  /// without a time limit. Fails with BlockingError.
  void runAuthorized(const std::string& command) const;

  void replace(const std::filesystem::path& source,
               const std::filesystem::path& destination) override;
  /// Does nothing: the flush already ran inside `replace`, under the same approval.
  void refreshDNS() override {}

 private:
  std::filesystem::path osascriptPath_ = "/usr/bin/osascript";
};

}  // namespace brindlet

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "TempDir.h"
#include "blocking/BlockingError.h"
#include "blocking/MacOSPrivilegedCommandRunner.h"
#include "blocking/PlatformDefaults.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using Runner = MacOSPrivilegedCommandRunner;

BlockingError outcomeFailure(int exitStatus, std::string_view errorText) {
  try {
    Runner::checkOutcome(exitStatus, errorText);
  } catch (const BlockingError& error) {
    return error;
  }
  ADD_FAILURE() << "expected a BlockingError";
  return BlockingError::verificationFailed();
}

std::size_t occurrences(std::string_view text, std::string_view piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != std::string_view::npos;
       at = text.find(piece, at + piece.size())) {
    ++count;
  }
  return count;
}

TEST(MacOSPrivilegedCommandRunnerTest, ShellQuoteWrapsInSingleQuotesAndEscapesThem) {
  EXPECT_EQ(Runner::shellQuote("/tmp/plain"), "'/tmp/plain'");
  EXPECT_EQ(Runner::shellQuote("it's here"), "'it'\\''s here'");
  EXPECT_EQ(Runner::shellQuote(""), "''");
}

TEST(MacOSPrivilegedCommandRunnerTest, BlankAndQuoteAreQuotedAndAppleScriptDoublesTheBackslash) {
  const std::string command = Runner::commandPlan("/tmp/it's a file", "/tmp/dest");
  EXPECT_NE(command.find("/bin/cp '/tmp/it'\\''s a file' '/tmp/dest'"), std::string::npos);
  const std::string escaped = Runner::appleScriptEscaped(command);
  EXPECT_NE(escaped.find("'/tmp/it'\\\\''s a file'"), std::string::npos);
  EXPECT_EQ(Runner::appleScriptEscaped("say \"hi\" \\ there"), "say \\\"hi\\\" \\\\ there");
}

TEST(MacOSPrivilegedCommandRunnerTest, CommandPlanQuotesSourceOnceAndDestinationThreeTimes) {
  const std::string destination = defaultHostsPath().string();
  const std::string command =
      Runner::commandPlan("/private/tmp/Backups/hosts 1.replacement", destination);
  EXPECT_EQ(command,
            "/bin/cp '/private/tmp/Backups/hosts 1.replacement' '" + destination +
                "' && /usr/sbin/chown root:wheel '" + destination + "' && /bin/chmod 644 '" +
                destination +
                "' && /usr/bin/dscacheutil -flushcache && /usr/bin/killall -HUP mDNSResponder");
  EXPECT_EQ(occurrences(command, "'/private/tmp/Backups/hosts 1.replacement'"), 1U);
  EXPECT_EQ(occurrences(command, "'" + destination + "'"), 3U);
}

TEST(MacOSPrivilegedCommandRunnerTest, ExitStatusOneWithCancelInAnyCaseIsAuthorizationCancelled) {
  EXPECT_EQ(outcomeFailure(1, "execution error: User canceled. (-128)"),
            BlockingError::authorizationCancelled());
  EXPECT_EQ(outcomeFailure(1, "CANCELLED BY USER"), BlockingError::authorizationCancelled());
  EXPECT_EQ(outcomeFailure(1, "the user chose to CaNcEl"), BlockingError::authorizationCancelled());
}

TEST(MacOSPrivilegedCommandRunnerTest,
     ExitStatusOneWithEmptyErrorTextIsWriteFailedWithEmptyDetail) {
  EXPECT_EQ(outcomeFailure(1, ""), BlockingError::writeFailed(""));
}

TEST(MacOSPrivilegedCommandRunnerTest, OtherFailureIsWriteFailedWithTrimmedText) {
  EXPECT_EQ(outcomeFailure(1, "  cp: /Volumes/System/hosts: Read-only file system\n"),
            BlockingError::writeFailed("cp: /Volumes/System/hosts: Read-only file system"));
  EXPECT_NO_THROW(Runner::checkOutcome(0, "warnings are no failure"));
}

TEST(MacOSPrivilegedCommandRunnerTest, RefreshDNSNeverFails) {
  Runner runner;
  EXPECT_NO_THROW(runner.refreshDNS());
}

// osascript doesn't exist here; a stand-in script shows the process handling end to end.
TEST(MacOSPrivilegedCommandRunnerTest, StandInOsascriptReceivesTheEscapedScript) {
  testing::TempDir folder;
  const fs::path standIn = folder / "osascript";
  const fs::path arguments = folder / "arguments";
  testing::writeBytes(standIn, "#!/bin/sh\nprintf '%s\\n' \"$1\" \"$2\" > '" + arguments.string() +
                                   "'\necho 'User canceled.' >&2\nexit 1\n");
  ::chmod(standIn.c_str(), 0755);
  Runner runner(standIn);
  try {
    runner.replace("/tmp/a \"b\"", "/tmp/dest");
    FAIL() << "expected a refusal";
  } catch (const BlockingError& error) {
    EXPECT_EQ(error, BlockingError::authorizationCancelled());
  }
  EXPECT_EQ(testing::readBytes(arguments),
            "-e\ndo shell script \"/bin/cp '/tmp/a \\\"b\\\"' '/tmp/dest' && /usr/sbin/chown "
            "root:wheel '/tmp/dest' && /bin/chmod 644 '/tmp/dest' && /usr/bin/dscacheutil "
            "-flushcache && /usr/bin/killall -HUP mDNSResponder\" with administrator privileges\n");
}

TEST(MacOSPrivilegedCommandRunnerTest, OsascriptThatCannotStartIsWriteFailed) {
  testing::TempDir folder;
  Runner runner(folder / "missing");
  try {
    runner.replace("/tmp/a", "/tmp/b");
    FAIL() << "expected a failure";
  } catch (const BlockingError& error) {
    EXPECT_EQ(error, BlockingError::writeFailed("No such file or directory"));
  }
}

}  // namespace
}  // namespace brindlet

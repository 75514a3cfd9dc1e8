#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "TempDir.h"
#include "blocking/BlockingError.h"
#include "blocking/LinuxPrivilegedCommandRunner.h"
#include "blocking/ShellCommand.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

// Only a root test run can hand files to root; elsewhere that step is left out.
bool runsAsRoot() { return ::geteuid() == 0; }

struct Fixture {
  testing::TempDir folder;
  fs::path source = folder / "hosts-1.replacement";
  fs::path destination = folder / "etc" / "hosts";
  fs::path flushes = folder / "flushes";

  Fixture() {
    testing::writeBytes(source, "127.0.0.1 localhost\n# new\n");
    testing::writeBytes(destination, "127.0.0.1 localhost\n");
    ::chmod(destination.c_str(), 0600);
  }

  // A stand-in for pkexec on a temporary path, with the given body.
  [[nodiscard]] fs::path standInPkexec(const std::string& body) const {
    const fs::path script = folder / "bin" / "pkexec";
    testing::writeBytes(script, "#!/bin/sh\n" + body + "\n");
    ::chmod(script.c_str(), 0755);
    return script;
  }

  // Runs the command it is given, after noting how it was called, as pkexec does once approved.
  [[nodiscard]] fs::path approvingPkexec() const {
    return standInPkexec("printf '%s\\n' \"$1\" \"$2\" > " +
                         shellQuoted((folder / "pkexec-arguments").string()) + "\nexec \"$@\"");
  }

  [[nodiscard]] LinuxPrivilegedCommandRunner::Options options(
      std::optional<fs::path> pkexec) const {
    return {.pkexecPath = std::move(pkexec),
            .setsRootOwner = runsAsRoot(),
            .nameCacheFlushCommand = "echo flushed >> " + shellQuoted(flushes.string())};
  }
};

BlockingError replaceFailure(LinuxPrivilegedCommandRunner& runner, const fs::path& source,
                             const fs::path& destination) {
  try {
    runner.replace(source, destination);
  } catch (const BlockingError& error) {
    return error;
  }
  ADD_FAILURE() << "expected a BlockingError";
  return BlockingError::verificationFailed();
}

mode_t permissionsOf(const fs::path& path) {
  struct stat info {};
  EXPECT_EQ(::stat(path.c_str(), &info), 0);
  return info.st_mode & 07777;
}

TEST(LinuxPrivilegedCommandRunnerTest, ApprovedCommandCopiesFileWithMode644AndFlushesOnce) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(f.approvingPkexec()));
  runner.replace(f.source, f.destination);
  EXPECT_NO_THROW(runner.refreshDNS());

  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n# new\n");
  EXPECT_EQ(permissionsOf(f.destination), 0644U);
  EXPECT_EQ(testing::readBytes(f.flushes), "flushed\n");
  EXPECT_EQ(testing::readBytes(f.folder / "pkexec-arguments"), "/bin/sh\n-c\n");
}

TEST(LinuxPrivilegedCommandRunnerTest, CopyKeepsTheDestinationsIdentity) {
  Fixture f;
  struct stat before {};
  ASSERT_EQ(::stat(f.destination.c_str(), &before), 0);
  LinuxPrivilegedCommandRunner runner(f.options(f.approvingPkexec()));
  runner.replace(f.source, f.destination);
  struct stat after {};
  ASSERT_EQ(::stat(f.destination.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST(LinuxPrivilegedCommandRunnerTest, DismissedDialogIsAuthorizationCancelled) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(f.standInPkexec("exit 126")));
  EXPECT_EQ(replaceFailure(runner, f.source, f.destination),
            BlockingError::authorizationCancelled());
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n");
}

TEST(LinuxPrivilegedCommandRunnerTest, OtherPkexecFailureIsWriteFailedWithTrimmedErrorText) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(
      f.standInPkexec("echo '  Error executing command as another user: Not authorized' >&2\n"
                      "echo >&2\nexit 127")));
  EXPECT_EQ(replaceFailure(runner, f.source, f.destination),
            BlockingError::writeFailed("Error executing command as another user: Not authorized"));
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n");
  EXPECT_FALSE(fs::exists(f.flushes));
}

TEST(LinuxPrivilegedCommandRunnerTest, ErrorTextThatIsNotUtf8CountsAsEmpty) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(
      f.options(f.standInPkexec("printf 'bad \\377 bytes' >&2\nexit 1")));
  EXPECT_EQ(replaceFailure(runner, f.source, f.destination), BlockingError::writeFailed(""));
}

TEST(LinuxPrivilegedCommandRunnerTest, MissingPkexecIsWriteFailedWithTheSystemText) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(f.folder / "no-such-pkexec"));
  EXPECT_EQ(replaceFailure(runner, f.source, f.destination),
            BlockingError::writeFailed("No such file or directory"));
}

TEST(LinuxPrivilegedCommandRunnerTest, SymbolicLinkSourceIsRefused) {
  Fixture f;
  const fs::path secret = f.folder / "secret";
  testing::writeBytes(secret, "not for the hosts file\n");
  const fs::path link = f.folder / "hosts-2.replacement";
  fs::create_symlink(secret, link);
  LinuxPrivilegedCommandRunner runner(f.options(f.approvingPkexec()));
  EXPECT_EQ(replaceFailure(runner, link, f.destination),
            BlockingError::writeFailed("The replacement is not a regular file."));
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n");
  EXPECT_FALSE(fs::exists(f.flushes));
}

TEST(LinuxPrivilegedCommandRunnerTest, SourceThatIsNoRegularFileIsRefused) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(std::nullopt));
  EXPECT_EQ(replaceFailure(runner, f.folder.path(), f.destination),
            BlockingError::writeFailed("The replacement is not a regular file."));
  EXPECT_EQ(replaceFailure(runner, f.folder / "missing", f.destination),
            BlockingError::writeFailed("The replacement is not a regular file."));
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n");
}

TEST(LinuxPrivilegedCommandRunnerTest, UnwritableDestinationIsWriteFailedWithShellText) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(std::nullopt));
  const BlockingError error = replaceFailure(runner, f.source, f.folder / "missing" / "hosts");
  EXPECT_EQ(error.which(), BlockingError::Case::writeFailed);
  EXPECT_NE(error.detail().find("missing/hosts"), std::string::npos) << error.detail();
  EXPECT_FALSE(fs::exists(f.flushes));
}

TEST(LinuxPrivilegedCommandRunnerTest, FailedFlushLeavesFileInPlaceAndIsReportedByRefreshDNS) {
  Fixture f;
  LinuxPrivilegedCommandRunner::Options options = f.options(f.approvingPkexec());
  options.nameCacheFlushCommand = "echo 'resolver gone' >&2; false";
  LinuxPrivilegedCommandRunner runner(options);
  EXPECT_NO_THROW(runner.replace(f.source, f.destination));
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n# new\n");
  try {
    runner.refreshDNS();
    FAIL() << "expected the flush failure";
  } catch (const BlockingError& error) {
    EXPECT_EQ(error, BlockingError::dnsRefreshFailed("resolver gone"));
  }
  EXPECT_NO_THROW(runner.refreshDNS());
}

TEST(LinuxPrivilegedCommandRunnerTest, RootProcessRunsTheCommandWithoutPkexec) {
  Fixture f;
  LinuxPrivilegedCommandRunner runner(f.options(std::nullopt));
  runner.replace(f.source, f.destination);
  EXPECT_EQ(testing::readBytes(f.destination), "127.0.0.1 localhost\n# new\n");
  EXPECT_EQ(testing::readBytes(f.flushes), "flushed\n");
  // Without pkexec there is no dialog, so 126 is no refusal.
  LinuxPrivilegedCommandRunner::Options options = f.options(std::nullopt);
  options.nameCacheFlushCommand = "exit 126";
  LinuxPrivilegedCommandRunner failing(options);
  EXPECT_EQ(replaceFailure(failing, f.source, f.destination).which(),
            BlockingError::Case::writeFailed);
}

TEST(LinuxPrivilegedCommandRunnerTest, PathsWithBlanksAndQuotesAreCopied) {
  Fixture f;
  const fs::path source = f.folder / "it's a \"dir\" $HOME" / "hosts `x`.replacement";
  const fs::path destination = f.folder / "etc; rm -rf x" / "ho'sts";
  testing::writeBytes(source, "quoted\n");
  testing::writeBytes(destination, "old\n");
  LinuxPrivilegedCommandRunner runner(f.options(std::nullopt));
  runner.replace(source, destination);
  EXPECT_EQ(testing::readBytes(destination), "quoted\n");
}

TEST(LinuxPrivilegedCommandRunnerTest, CommandPlanHandsFileToRootAndFlushesTheRunningCache) {
  const std::string plan =
      LinuxPrivilegedCommandRunner::commandPlan("/tmp/a b/hosts-1.replacement", "/x/hosts", {});
  EXPECT_NE(plan.find("src='/tmp/a b/hosts-1.replacement'"), std::string::npos);
  EXPECT_NE(plan.find("dst='/x/hosts'"), std::string::npos);
  EXPECT_NE(plan.find("/bin/chown root:root \"$dst\""), std::string::npos);
  EXPECT_NE(plan.find("/bin/chmod 644 \"$dst\""), std::string::npos);
  EXPECT_NE(plan.find("/usr/bin/resolvectl flush-caches"), std::string::npos);
  EXPECT_NE(plan.find("/usr/sbin/nscd -i hosts"), std::string::npos);
  EXPECT_LT(plan.find("[ -L \"$src\" ]"), plan.find("/bin/cat"));
}

}  // namespace
}  // namespace brindlet

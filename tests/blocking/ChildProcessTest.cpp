#include <gtest/gtest.h>

#include "support/BrindletError.h"
#include "support/ChildProcess.h"

namespace brindlet {
namespace {

TEST(ChildProcessTest, ExitStatusAndStandardErrorAreCollected) {
  const ChildProcessResult result =
      runChildProcess("/bin/sh", {"-c", "echo 'went wrong' >&2; exit 3"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_EQ(result.standardError, "went wrong\n");
}

TEST(ChildProcessTest, ArgumentsArriveAsSeparateWords) {
  const ChildProcessResult result =
      runChildProcess("/bin/sh", {"-c", "printf '%s|' \"$@\" >&2", "sh", "a b", "'c'", ""});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.standardError, "a b|'c'||");
}

TEST(ChildProcessTest, ProcessEndedBySignalReports128PlusTheSignal) {
  const ChildProcessResult result = runChildProcess("/bin/sh", {"-c", "kill -9 $$"});
  EXPECT_EQ(result.exitStatus, 128 + 9);
}

TEST(ChildProcessTest, ProgramThatDoesNotExistIsSystemError) {
  try {
    (void)runChildProcess("/nonexistent/program", {});
    FAIL() << "expected a SystemError";
  } catch (const SystemError& error) {
    EXPECT_EQ(error.errorNumber(), ENOENT);
  }
}

TEST(ChildProcessTest, LargeErrorOutputDoesNotBlockTheChild) {
  const ChildProcessResult result =
      runChildProcess("/bin/sh", {"-c", "head -c 1000000 /dev/zero | tr '\\0' x >&2"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.standardError.size(), 1000000U);
}

}  // namespace
}  // namespace brindlet

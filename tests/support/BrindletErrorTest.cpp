#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "support/BrindletError.h"

namespace brindlet {
namespace {

class SampleError : public BrindletError {
 public:
  [[nodiscard]] std::string description() const override { return "Something fixed."; }
};

std::exception_ptr captured(auto thrower) {
  try {
    thrower();
  } catch (...) {
    return std::current_exception();
  }
  return {};
}

TEST(BrindletErrorTest, ErrorTextIsTheDescriptionOfOurErrors) {
  EXPECT_EQ(errorText(captured([] { throw SampleError(); })), "Something fixed.");
  EXPECT_STREQ(SampleError().what(), "Something fixed.");
}

TEST(BrindletErrorTest, ErrorTextOfOtherExceptionsIsTheirMessage) {
  EXPECT_EQ(errorText(captured([] { throw std::runtime_error("disk on fire"); })), "disk on fire");
  EXPECT_EQ(errorText(captured([] { throw 42; })), "An unexpected error occurred.");
}

TEST(BrindletErrorTest, SystemErrorCarriesTheSystemsWords) {
  const SystemError error(ENOSPC, "write “state.json”");
  EXPECT_EQ(error.description(), "Could not write “state.json”: No space left on device.");
  EXPECT_EQ(systemErrorText(EACCES), "Permission denied");
}

TEST(BrindletErrorTest, CurrentErrorTextWorksInsideACatchBlock) {
  try {
    throw SystemError(EIO, "read “x”");
  } catch (...) {
    EXPECT_EQ(currentErrorText(), "Could not read “x”: Input/output error.");
  }
}

}  // namespace
}  // namespace brindlet

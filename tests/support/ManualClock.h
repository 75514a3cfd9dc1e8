#pragma once

#include "Builders.h"
#include "support/Clock.h"
#include "support/Instant.h"

namespace brindlet::testing {

/// A clock that stands still until the test moves it.
class ManualClock : public Clock {
 public:
  explicit ManualClock(Instant start = kTestNow) : current_(start) {}

  [[nodiscard]] Instant now() const override { return current_; }
  void set(Instant instant) { current_ = instant; }
  void advance(double seconds) { current_ = current_.advanced(seconds); }

 private:
  Instant current_;
};

}  // namespace brindlet::testing

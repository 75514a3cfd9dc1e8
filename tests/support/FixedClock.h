#pragma once

#include "support/Clock.h"
#include "support/Instant.h"

namespace brindlet::testing {

/// A clock that reads whatever time the test sets.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(Instant time) : time(time) {}
  [[nodiscard]] Instant now() const override { return time; }

  Instant time;
};

}  // namespace brindlet::testing

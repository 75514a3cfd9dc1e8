#pragma once

#include "support/Instant.h"

namespace brindlet {

/// Where the current time comes from; only the composition root uses the real one.
class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Instant now() const = 0;
};

/// The machine's wall clock.
class SystemClock final : public Clock {
 public:
  [[nodiscard]] Instant now() const override;
};

}  // namespace brindlet

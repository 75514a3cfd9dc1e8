#include "support/Clock.h"

#include <chrono>

namespace brindlet {

Instant SystemClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Instant::fromUnix(std::chrono::duration<double>(sinceEpoch).count());
}

}  // namespace brindlet

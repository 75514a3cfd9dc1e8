#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sync/DeviceIdentityError.h"
#include "sync/SecureValueStoring.h"

namespace brindlet::testing {

/// A secure value store held in memory, counting its calls; it can be told to refuse reading
/// or writing as a platform store would, with a status.
class InMemorySecureValueStore final : public SecureValueStoring {
 public:
  std::optional<std::string> value;
  std::optional<DeviceIdentityError> readFailure;
  std::optional<DeviceIdentityError> writeFailure;
  int readCount = 0;
  int writeCount = 0;

  std::optional<std::string> read() override {
    ++readCount;
    if (readFailure) throw *readFailure;
    return value;
  }

  void write(std::string_view bytes) override {
    ++writeCount;
    if (writeFailure) throw *writeFailure;
    value = std::string(bytes);
  }
};

}  // namespace brindlet::testing

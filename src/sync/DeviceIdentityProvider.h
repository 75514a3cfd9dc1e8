#pragma once

#include <memory>
#include <string>

#include "sync/SecureValueStoring.h"

namespace brindlet {

/// This device's one identifier in every sync record it publishes, made once and kept in a
/// secure value store so that it survives relaunches.
class DeviceIdentityProvider {
 public:
  explicit DeviceIdentityProvider(std::shared_ptr<SecureValueStoring> store)
      : store_(std::move(store)) {}

  /// The stored identifier as it was stored, or a new lower-case UUID text that is stored first.
  /// A store that can't be read fails with its error and no new identifier is made: an
  /// unreadable store must not cost the device its identity. A stored value that isn't a UUID
  /// fails with DeviceIdentityError::corruptIdentity and stays: replacing it would make this
  /// device a stranger to its partners.
  [[nodiscard]] std::string loadOrCreate();

 private:
  std::shared_ptr<SecureValueStoring> store_;
};

}  // namespace brindlet

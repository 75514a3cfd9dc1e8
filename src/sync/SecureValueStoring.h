#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brindlet {

/// A store of one secret value, which its own configuration chooses; no key passes through
/// here. Both operations may fail, with DeviceIdentityError::keychainStatus or their own error.
class SecureValueStoring {
 public:
  virtual ~SecureValueStoring() = default;

  /// The stored value, or absent when there is none; absence is no error.
  [[nodiscard]] virtual std::optional<std::string> read() = 0;
  /// Stores the value, replacing any earlier one.
  virtual void write(std::string_view bytes) = 0;
};

}  // namespace brindlet

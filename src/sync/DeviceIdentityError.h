#pragma once

#include <cstdint>
#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// This device's identifier can't be had; without it the device can't pair.
class DeviceIdentityError : public BrindletError {
 public:
  enum class Case { keychainStatus, corruptIdentity };

  /// The platform's secure store refused, with its status.
  [[nodiscard]] static DeviceIdentityError keychainStatus(std::int32_t status) {
    return DeviceIdentityError(Case::keychainStatus, status);
  }
  /// The stored value isn't an identifier.
  [[nodiscard]] static DeviceIdentityError corruptIdentity() {
    return DeviceIdentityError(Case::corruptIdentity, 0);
  }

  [[nodiscard]] Case which() const { return case_; }
  /// The store's status for keychainStatus; 0 otherwise.
  [[nodiscard]] std::int32_t status() const { return status_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const DeviceIdentityError& a, const DeviceIdentityError& b) {
    return a.case_ == b.case_ && a.status_ == b.status_;
  }

 private:
  DeviceIdentityError(Case which, std::int32_t status) : case_(which), status_(status) {}

  Case case_;
  std::int32_t status_;
};

}  // namespace brindlet

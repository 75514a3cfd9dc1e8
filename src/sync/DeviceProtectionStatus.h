#pragma once

#include <optional>
#include <string>

#include "support/Instant.h"

namespace brindlet {

/// How well a paired device protects one session, as far as this device knows.
struct DeviceProtectionStatus {
  enum class Case {
    /// The device confirmed the current intent; `until` holds the session's end.
    protectedUntil,
    /// The device reported a failure; `code` holds its short code, if it gave one.
    failed,
    /// The device isn't known.
    notPaired,
    /// No confirmation of the current intent yet.
    waitingForIPhone,
    /// The device lacks Screen Time authorization.
    authorizationRequired,
    /// The device has no apps chosen.
    profileMissing,
    /// The build on the device lacks the Family Controls entitlement.
    entitlementMissing,
    /// The session is over.
    expired,
  };

  Case which = Case::notPaired;
  /// Set for protectedUntil only.
  std::optional<Instant> until;
  /// Set for failed only, when the device gave a code.
  std::optional<std::string> code;

  [[nodiscard]] static DeviceProtectionStatus protectedUntil(Instant until) {
    return {.which = Case::protectedUntil, .until = until, .code = std::nullopt};
  }
  [[nodiscard]] static DeviceProtectionStatus failed(std::optional<std::string> code) {
    return {.which = Case::failed, .until = std::nullopt, .code = std::move(code)};
  }
  /// Any case without a payload.
  [[nodiscard]] static DeviceProtectionStatus of(Case which) {
    return {.which = which, .until = std::nullopt, .code = std::nullopt};
  }

  friend bool operator==(const DeviceProtectionStatus&, const DeviceProtectionStatus&) = default;
};

}  // namespace brindlet

#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A cloud record database that couldn't do what was asked.
class CloudPairingTransportError : public BrindletError {
 public:
  enum class Case { databaseFailure, waitingForICloud, offline, permissionDenied };

  /// The store failed; the text is the store's own and isn't shown anywhere.
  [[nodiscard]] static CloudPairingTransportError databaseFailure(std::string reason) {
    return CloudPairingTransportError(Case::databaseFailure, std::move(reason));
  }
  /// Any case without a payload.
  explicit CloudPairingTransportError(Case which) : case_(which) {}

  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const CloudPairingTransportError& a, const CloudPairingTransportError& b) {
    return a.case_ == b.case_ && a.reason_ == b.reason_;
  }

 private:
  CloudPairingTransportError(Case which, std::string reason)
      : case_(which), reason_(std::move(reason)) {}

  Case case_;
  std::string reason_;
};

}  // namespace brindlet

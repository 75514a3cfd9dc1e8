#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A change of the hosts file that didn't happen, or happened only in part.
class BlockingError : public BrindletError {
 public:
  enum class Case {
    readFailed,
    writeFailed,
    dnsRefreshFailed,
    rollbackFailed,
    authorizationCancelled,
    verificationFailed,
  };

  [[nodiscard]] static BlockingError readFailed(std::string detail);
  [[nodiscard]] static BlockingError writeFailed(std::string detail);
  [[nodiscard]] static BlockingError dnsRefreshFailed(std::string detail);
  [[nodiscard]] static BlockingError rollbackFailed(std::string detail);
  [[nodiscard]] static BlockingError authorizationCancelled();
  [[nodiscard]] static BlockingError verificationFailed();

  [[nodiscard]] Case which() const { return case_; }
  /// The words of the failure underneath; empty for the cases that carry none.
  [[nodiscard]] const std::string& detail() const { return detail_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const BlockingError& a, const BlockingError& b) {
    return a.case_ == b.case_ && a.detail_ == b.detail_;
  }

 private:
  BlockingError(Case which, std::string detail) : case_(which), detail_(std::move(detail)) {}

  Case case_;
  std::string detail_;
};

}  // namespace brindlet

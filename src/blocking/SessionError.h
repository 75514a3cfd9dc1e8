#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A blocking session that can't be started or ended as asked.
class SessionError : public BrindletError {
 public:
  enum class Case { alreadyActive, strictSessionLocked, invalidDuration, noEnabledDomains };

  explicit SessionError(Case which) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const SessionError& a, const SessionError& b) {
    return a.case_ == b.case_;
  }

 private:
  Case case_;
};

}  // namespace brindlet

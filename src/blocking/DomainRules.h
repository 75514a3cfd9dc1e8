#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/BrindletError.h"

namespace brindlet {

/// Text that can't be stored or blocked as a site.
class DomainRuleError : public BrindletError {
 public:
  enum class Case { empty, credentialsNotAllowed, ipAddressNotAllowed, invalidHost };

  explicit DomainRuleError(Case which) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const DomainRuleError& a, const DomainRuleError& b) {
    return a.case_ == b.case_;
  }

 private:
  Case case_;
};

/// The one form in which a site is stored and blocked: what a user typed becomes a lower-case
/// host name without its "www." prefix, and stored domains become the names for the hosts file.
namespace DomainRules {

/// The host of what the user typed, lower-case and without a leading "www.". Port, path, query
/// and fragment are dropped. Fails with DomainRuleError.
[[nodiscard]] std::string normalize(std::string_view userText);

/// Each stored domain normalised once more, without duplicates, sorted, and each followed by
/// its "www." form. Fails with the first DomainRuleError met.
[[nodiscard]] std::vector<std::string> expandedHosts(const std::vector<std::string>& domains);

}  // namespace DomainRules

}  // namespace brindlet

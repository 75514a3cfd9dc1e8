#include "blocking/BlockingError.h"

namespace brindlet {

BlockingError BlockingError::readFailed(std::string detail) {
  return {Case::readFailed, std::move(detail)};
}

BlockingError BlockingError::writeFailed(std::string detail) {
  return {Case::writeFailed, std::move(detail)};
}

BlockingError BlockingError::dnsRefreshFailed(std::string detail) {
  return {Case::dnsRefreshFailed, std::move(detail)};
}

BlockingError BlockingError::rollbackFailed(std::string detail) {
  return {Case::rollbackFailed, std::move(detail)};
}

BlockingError BlockingError::authorizationCancelled() { return {Case::authorizationCancelled, {}}; }

BlockingError BlockingError::verificationFailed() { return {Case::verificationFailed, {}}; }

std::string BlockingError::description() const {
  switch (case_) {
    case Case::readFailed:
      return "Could not read the hosts file: " + detail_;
    case Case::writeFailed:
      return "Could not update the hosts file: " + detail_;
    case Case::dnsRefreshFailed:
      return "Blocking was written, but DNS refresh failed: " + detail_;
    case Case::rollbackFailed:
      return "The update failed and rollback needs attention: " + detail_;
    case Case::authorizationCancelled:
      return "Administrator approval was cancelled. No changes were made.";
    case Case::verificationFailed:
      return "The hosts file update could not be verified.";
  }
  return "The hosts file update could not be verified.";
}

}  // namespace brindlet

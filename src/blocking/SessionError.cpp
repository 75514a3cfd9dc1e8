#include "blocking/SessionError.h"

namespace brindlet {

std::string SessionError::description() const {
  switch (case_) {
    case Case::alreadyActive:
      return "A focus session is already active.";
    case Case::strictSessionLocked:
      return "Strict sessions cannot be ended before their timer expires.";
    case Case::invalidDuration:
      return "Choose a duration of at least one minute.";
    case Case::noEnabledDomains:
      return "Enable at least one domain before starting.";
  }
  return {};
}

}  // namespace brindlet

#include "agent/AgentServiceError.h"

namespace brindlet {

std::string AgentServiceError::description() const {
  switch (case_) {
    case Case::invalidPayload:
      return message_;
    case Case::expectedRevisionRequired:
      return "Mutating commands require expected_revision.";
  }
  return {};
}

}  // namespace brindlet

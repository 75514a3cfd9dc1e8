#include "review/RecommendationError.h"

namespace brindlet {

std::string RecommendationError::description() const {
  switch (case_) {
    case Case::proposalNotFound:
      return "The recommendation no longer exists.";
    case Case::proposalNotPending:
      return "The recommendation was already handled.";
    case Case::taskChanged:
      return "The task changed after this recommendation was created. Generate a new review.";
  }
  return {};
}

}  // namespace brindlet

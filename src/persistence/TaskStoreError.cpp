#include "persistence/TaskStoreError.h"

namespace brindlet {

TaskStoreError TaskStoreError::revisionConflict(std::int64_t expected, std::int64_t actual) {
  return {Case::revisionConflict, expected, actual};
}

std::string TaskStoreError::description() const {
  switch (case_) {
    case Case::revisionConflict:
      return "The task list changed. Refresh and try again (expected revision " +
             std::to_string(expected_) + ", current " + std::to_string(actual_) + ").";
  }
  return {};
}

}  // namespace brindlet

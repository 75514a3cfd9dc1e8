#include "flow/TaskSessionError.h"

namespace brindlet {

std::string TaskSessionError::description() const {
  switch (case_) {
    case Case::taskNotFound:
      return "The task no longer exists.";
    case Case::anotherTaskActive:
      return "Finish or pause the active task first.";
    case Case::noActiveTask:
      return "No task is currently active.";
    case Case::invalidState:
      return "That action is not available for this task.";
  }
  return {};
}

}  // namespace brindlet

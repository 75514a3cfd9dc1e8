#include "reminders/ReminderCoordinator.h"

#include "reminders/ReminderPlanner.h"
#include "support/BrindletError.h"

namespace brindlet {

std::optional<ReminderWarning> ReminderCoordinator::sync(const FocusTask& task) {
  const std::vector<ReminderRequest> requests = ReminderPlanner::requests(task);
  if (requests.empty()) {
    // Nothing to show, so nothing to ask the user either.
    scheduler_->cancel(task.id);
    return std::nullopt;
  }
  ReminderAuthorization status = scheduler_->authorizationStatus();
  if (status == ReminderAuthorization::notDetermined) {
    try {
      status = scheduler_->requestAuthorization() ? ReminderAuthorization::authorized
                                                  : ReminderAuthorization::denied;
    } catch (...) {
      return ReminderWarning::schedulingFailed(currentErrorText());
    }
  }
  if (status != ReminderAuthorization::authorized) return ReminderWarning::permissionDenied();
  scheduler_->cancel(task.id);
  try {
    scheduler_->schedule(requests);
  } catch (...) {
    return ReminderWarning::schedulingFailed(currentErrorText());
  }
  return std::nullopt;
}

}  // namespace brindlet

#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "reminders/ReminderPlanner.h"
#include "reminders/ReminderScheduling.h"

namespace brindlet::testing {

/// A notification service for tests: it records every call in order, keeps the pending
/// requests by identifier, and can be told how to answer.
class RecordingReminderScheduler : public ReminderScheduling {
 public:
  enum class PromptAnswer { grant, refuse, fail };

  ReminderAuthorization status = ReminderAuthorization::authorized;
  PromptAnswer promptAnswer = PromptAnswer::grant;
  /// When set, schedule adds nothing and fails with this text.
  std::optional<std::string> scheduleFailure;

  std::vector<std::string> calls;
  std::map<std::string, ReminderRequest> pending;

  ReminderAuthorization authorizationStatus() override {
    calls.emplace_back("authorizationStatus");
    return status;
  }

  bool requestAuthorization() override {
    calls.emplace_back("requestAuthorization");
    if (promptAnswer == PromptAnswer::fail) throw std::runtime_error("The prompt failed.");
    status = promptAnswer == PromptAnswer::grant ? ReminderAuthorization::authorized
                                                 : ReminderAuthorization::denied;
    return promptAnswer == PromptAnswer::grant;
  }

  void schedule(const std::vector<ReminderRequest>& requests) override {
    calls.emplace_back("schedule");
    if (scheduleFailure) throw std::runtime_error(*scheduleFailure);
    for (const ReminderRequest& request : requests) pending[request.id] = request;
  }

  void cancel(const Uuid& taskID) override {
    calls.emplace_back("cancel");
    for (const ReminderKind kind : kAllReminderKinds) {
      pending.erase(ReminderPlanner::identifier(taskID, kind));
    }
  }
};

}  // namespace brindlet::testing

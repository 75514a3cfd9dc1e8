#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reminders/ReminderRequest.h"
#include "support/Uuid.h"

namespace brindlet {

/// Whether the user lets Brindlet show notifications.
enum class ReminderAuthorization { notDetermined, authorized, denied };

/// Why a task's reminders couldn't be put in place; the task itself was saved all the same.
struct ReminderWarning {
  enum class Case { schedulingFailed, permissionDenied };

  Case which = Case::permissionDenied;
  /// The platform's words, for schedulingFailed.
  std::string reason{};

  [[nodiscard]] static ReminderWarning schedulingFailed(std::string reason) {
    return {Case::schedulingFailed, std::move(reason)};
  }
  [[nodiscard]] static ReminderWarning permissionDenied() { return {Case::permissionDenied, {}}; }

  friend bool operator==(const ReminderWarning&, const ReminderWarning&) = default;
};

/// The system's notification service, as the reminders see it.
class ReminderScheduling {
 public:
  virtual ~ReminderScheduling() = default;
  [[nodiscard]] virtual ReminderAuthorization authorizationStatus() = 0;
  /// Asks the user; true when granted. May fail with the platform's error.
  virtual bool requestAuthorization() = 0;
  /// Adds the notifications in order; the first failure stops it and is raised.
  virtual void schedule(const std::vector<ReminderRequest>& requests) = 0;
  /// Removes the task's pending notifications of every kind. Never fails.
  virtual void cancel(const Uuid& taskID) = 0;
};

}  // namespace brindlet

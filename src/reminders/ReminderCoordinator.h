#pragma once

#include <memory>
#include <optional>

#include "records/FocusTask.h"
#include "reminders/ReminderScheduling.h"

namespace brindlet {

/// Keeps a task's pending notifications in line with its plan, asking for permission the first
/// time a task has any.
class ReminderCoordinator {
 public:
  explicit ReminderCoordinator(std::shared_ptr<ReminderScheduling> scheduler)
      : scheduler_(std::move(scheduler)) {}

  /// Replaces the task's notifications by those of its current plan. Never fails: a problem
  /// comes back as a warning to show beside the saved task.
  [[nodiscard]] std::optional<ReminderWarning> sync(const FocusTask& task);
  /// Takes back every pending notification of the task. Never fails.
  void cancel(const Uuid& taskID) { scheduler_->cancel(taskID); }

 private:
  std::shared_ptr<ReminderScheduling> scheduler_;
};

}  // namespace brindlet

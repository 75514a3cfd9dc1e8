#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A step of a task's work that doesn't fit the task as it stands.
class TaskSessionError : public BrindletError {
 public:
  enum class Case { taskNotFound, anotherTaskActive, noActiveTask, invalidState };

  explicit TaskSessionError(Case which) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

 private:
  Case case_;
};

}  // namespace brindlet

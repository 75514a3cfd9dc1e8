#pragma once

#include <cstdint>
#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A change computed from a revision of the plan that is no longer the current one.
class TaskStoreError : public BrindletError {
 public:
  enum class Case { revisionConflict };

  [[nodiscard]] static TaskStoreError revisionConflict(std::int64_t expected, std::int64_t actual);

  [[nodiscard]] Case which() const { return case_; }
  /// The revision the change was computed from.
  [[nodiscard]] std::int64_t expected() const { return expected_; }
  /// The revision the file held when the change arrived.
  [[nodiscard]] std::int64_t actual() const { return actual_; }
  [[nodiscard]] std::string description() const override;

 private:
  TaskStoreError(Case which, std::int64_t expected, std::int64_t actual)
      : case_(which), expected_(expected), actual_(actual) {}

  Case case_;
  std::int64_t expected_;
  std::int64_t actual_;
};

}  // namespace brindlet

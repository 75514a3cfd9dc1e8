#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A recommendation that can't be acted on as asked.
class RecommendationError : public BrindletError {
 public:
  enum class Case { proposalNotFound, proposalNotPending, taskChanged };
  explicit RecommendationError(Case which) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

 private:
  Case case_;
};

}  // namespace brindlet

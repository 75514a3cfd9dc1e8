#pragma once

#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A command whose envelope lacks what the command needs; it never leaves the service, which
/// answers it as `invalid_payload` or `expected_revision_required`.
class AgentServiceError : public BrindletError {
 public:
  enum class Case { invalidPayload, expectedRevisionRequired };

  [[nodiscard]] static AgentServiceError invalidPayload(std::string message) {
    return {Case::invalidPayload, std::move(message)};
  }
  [[nodiscard]] static AgentServiceError expectedRevisionRequired() {
    return {Case::expectedRevisionRequired, {}};
  }

  [[nodiscard]] Case which() const { return case_; }
  /// The words of an invalid payload, such as "Missing title.".
  [[nodiscard]] const std::string& message() const { return message_; }
  [[nodiscard]] std::string description() const override;

 private:
  AgentServiceError(Case which, std::string message) : case_(which), message_(std::move(message)) {}

  Case case_;
  std::string message_;
};

}  // namespace brindlet

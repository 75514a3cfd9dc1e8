#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace brindlet {

/// A failure whose text a person can read; every error type of the system derives from it.
class BrindletError : public std::exception {
 public:
  /// The sentence shown to the user.
  [[nodiscard]] virtual std::string description() const = 0;
  [[nodiscard]] const char* what() const noexcept override;

 private:
  mutable std::string whatText_;
};

/// A failure of the operating system, carrying the system's own words for its error number.
class SystemError : public BrindletError {
 public:
  /// `action` completes "Could not {action}", such as "write “state.json”".
  SystemError(int errorNumber, std::string action);
  [[nodiscard]] int errorNumber() const { return errorNumber_; }
  [[nodiscard]] std::string description() const override;

 private:
  int errorNumber_;
  std::string action_;
};

/// The system's text for an error number, as strerror gives it.
[[nodiscard]] std::string systemErrorText(int errorNumber);

/// The user-facing text of any caught exception.
[[nodiscard]] std::string errorText(const std::exception_ptr& error);

/// The user-facing text of the exception being handled; call it only inside a catch block.
[[nodiscard]] std::string currentErrorText();

}  // namespace brindlet

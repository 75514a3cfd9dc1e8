#include "support/BrindletError.h"

#include <cstring>
#include <new>

namespace brindlet {

const char* BrindletError::what() const noexcept {
  try {
    whatText_ = description();
    return whatText_.c_str();
  } catch (...) {
    return "Brindlet error";
  }
}

SystemError::SystemError(int errorNumber, std::string action)
    : errorNumber_(errorNumber), action_(std::move(action)) {}

std::string SystemError::description() const {
  return "Could not " + action_ + ": " + systemErrorText(errorNumber_) + ".";
}

std::string systemErrorText(int errorNumber) {
  char buffer[256];
  // The GNU strerror_r returns a pointer that may or may not be the buffer.
  return ::strerror_r(errorNumber, buffer, sizeof buffer);
}

std::string errorText(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const BrindletError& e) {
    return e.description();
  } catch (const std::bad_alloc&) {
    return "There is not enough memory to finish this.";
  } catch (const std::exception& e) {
    return e.what();
  } catch (...) {
    return "An unexpected error occurred.";
  }
}

std::string currentErrorText() { return errorText(std::current_exception()); }

}  // namespace brindlet

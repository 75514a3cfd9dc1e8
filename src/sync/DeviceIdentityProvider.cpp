#include "sync/DeviceIdentityProvider.h"

#include <simdjson.h>

#include "support/Uuid.h"
#include "sync/DeviceIdentityError.h"

namespace brindlet {

std::string DeviceIdentityProvider::loadOrCreate() {
  if (std::optional<std::string> stored = store_->read()) {
    if (!simdjson::validate_utf8(stored->data(), stored->size()) || !Uuid::parse(*stored)) {
      throw DeviceIdentityError::corruptIdentity();
    }
    return std::move(*stored);
  }
  std::string identifier = Uuid::random().lowercaseText();
  store_->write(identifier);
  return identifier;
}

}  // namespace brindlet

#include "sync/DeviceIdentityError.h"

namespace brindlet {

std::string DeviceIdentityError::description() const {
  switch (case_) {
    case Case::keychainStatus:
      return "The secure store refused access to this device's identity (status " +
             std::to_string(status_) + ").";
    case Case::corruptIdentity:
      return "The stored identity of this device is damaged.";
  }
  return "The identity of this device could not be read.";
}

}  // namespace brindlet

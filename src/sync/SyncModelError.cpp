#include "sync/SyncModelError.h"

namespace brindlet {

std::string SyncModelError::description() const {
  switch (case_) {
    case Case::unsupportedSchemaVersion:
      return "A synced record uses version " + std::to_string(version_) +
             ", which this version of Brindlet can't read.";
    case Case::corruptPayload:
      return "A synced record could not be read.";
  }
  return "A synced record could not be read.";
}

}  // namespace brindlet

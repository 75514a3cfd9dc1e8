#include "sync/CloudPairingTransportError.h"

namespace brindlet {

std::string CloudPairingTransportError::description() const {
  switch (case_) {
    case Case::databaseFailure:
      return "The cloud record store failed.";
    case Case::waitingForICloud:
      return "The cloud account isn't available yet.";
    case Case::offline:
      return "The cloud record store can't be reached.";
    case Case::permissionDenied:
      return "The cloud record store refused access.";
  }
  return "The cloud record store failed.";
}

}  // namespace brindlet

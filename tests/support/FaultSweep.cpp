#include "FaultSweep.h"

#include <cerrno>
#include <cstring>

namespace brindlet::testing {

std::string FileFault::describe() const {
  return nameOf(step) + " #" + std::to_string(occurrence) + " failing with " +
         std::strerror(errorNumber);
}

std::vector<FileFault> everyFaultOf(const std::function<void(FaultyFileService&)>& cleanRun) {
  FaultyFileService counter;
  cleanRun(counter);
  std::vector<FileFault> faults;
  for (const FileStep step : kAllFileSteps) {
    for (std::size_t n = 1; n <= counter.calls(step); ++n) {
      for (const int error : {ENOSPC, EIO, EACCES}) faults.push_back({step, n, error});
    }
  }
  return faults;
}

}  // namespace brindlet::testing

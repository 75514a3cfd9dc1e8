#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "FaultyFileService.h"

namespace brindlet::testing {

/// One place a file operation can fail: the n-th call of a step, with an error number.
struct FileFault {
  FileStep step;
  std::size_t occurrence;
  int errorNumber;

  [[nodiscard]] std::string describe() const;
};

/// Every single fault an operation can meet: `cleanRun` performs it once without faults on the
/// service, which counts how often each step is reached, and each such call then fails once
/// with each of ENOSPC, EIO and EACCES.
[[nodiscard]] std::vector<FileFault> everyFaultOf(
    const std::function<void(FaultyFileService&)>& cleanRun);

}  // namespace brindlet::testing

#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brindlet::bench {

/// Prints the usual console table, then each measured benchmark's time as a ratio of its
/// baseline from the same run, so that figures compare across machines: processor time, or
/// wall time for benchmarks that use real time (disk work), medians when repeated.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  /// Pairs of (measured, baseline) benchmark names.
  explicit RatioReporter(std::vector<std::pair<std::string, std::string>> ratios);
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  std::vector<std::pair<std::string, std::string>> ratios_;
  std::map<std::string, double> times_;
  std::set<std::string> medians_;
};

/// Runs every registered benchmark with the reporter; the body of a benchmark program's main.
int runWithRatios(int argc, char** argv, std::vector<std::pair<std::string, std::string>> ratios);

}  // namespace brindlet::bench

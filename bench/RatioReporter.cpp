#include "RatioReporter.h"

#include <cstdio>

namespace brindlet::bench {

RatioReporter::RatioReporter(std::vector<std::pair<std::string, std::string>> ratios)
    : ratios_(std::move(ratios)) {}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
      realTimes_[run.benchmark_name()] = run.GetAdjustedRealTime();
    }
  }
}

void RatioReporter::Finalize() {
  ConsoleReporter::Finalize();
  std::printf("\nRatios against baselines of the same run:\n");
  for (const auto& [measured, baseline] : ratios_) {
    const auto m = realTimes_.find(measured);
    const auto b = realTimes_.find(baseline);
    if (m == realTimes_.end() || b == realTimes_.end() || b->second == 0) continue;
    std::printf("  %-40s / %-40s = %6.2fx\n", measured.c_str(), baseline.c_str(),
                m->second / b->second);
  }
}

int runWithRatios(int argc, char** argv, std::vector<std::pair<std::string, std::string>> ratios) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter(std::move(ratios));
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace brindlet::bench

#include "RatioReporter.h"

#include <cstdio>

namespace brindlet::bench {

namespace {

// Work that waits for the disk is timed by the wall clock ("/real_time" benchmarks); work on
// the processor by processor time, which other programs on the machine disturb far less.
double measuredTime(const benchmark::BenchmarkReporter::Run& run) {
  return run.run_name.time_type.empty() ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
}

}  // namespace

RatioReporter::RatioReporter(std::vector<std::pair<std::string, std::string>> ratios)
    : ratios_(std::move(ratios)) {}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  // With repetitions the median of a benchmark stands for it; otherwise its single run does.
  for (const Run& run : runs) {
    if (run.error_occurred) continue;
    if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
      times_[run.run_name.str()] = measuredTime(run);
      medians_.insert(run.run_name.str());
    } else if (run.run_type == Run::RT_Iteration && !medians_.contains(run.run_name.str())) {
      times_[run.run_name.str()] = measuredTime(run);
    }
  }
}

void RatioReporter::Finalize() {
  ConsoleReporter::Finalize();
  std::printf("\nRatios against baselines of the same run:\n");
  for (const auto& [measured, baseline] : ratios_) {
    const auto m = times_.find(measured);
    const auto b = times_.find(baseline);
    if (m == times_.end() || b == times_.end() || b->second == 0) continue;
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

// Costs of the state file at the size of years of use: the snapshot the heartbeat takes every
// second, with the file unchanged and after a change, and one transaction, each beside the
// plain work it is judged against. The closing lines give the ratios.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

#include "StateFileGenerator.h"
#include "TemporaryFolder.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "support/Files.h"

namespace brindlet::bench {
namespace {

namespace fs = std::filesystem;

// A temporary folder holding the generated state file, made once for all benchmarks.
class BenchFolder {
 public:
  BenchFolder() {
    LocalStore(stateFile())
        .save(generateState(kLargePlanTasks, kLargePlanAuditEvents, kLargePlanSeed));
    fileSize_ = static_cast<double>(fs::file_size(stateFile()));
  }

  [[nodiscard]] fs::path stateFile() const { return path_ / "state.json"; }
  [[nodiscard]] double fileSize() const { return fileSize_; }

  // Drops the recovery copies that transactions leave, so that the disk doesn't fill up.
  void removeRecoveryCopies() const {
    std::error_code ignored;
    fs::remove_all(path_ / "State Backups", ignored);
  }

 private:
  TemporaryFolder temporary_;
  fs::path path_ = temporary_.path();
  double fileSize_ = 0;
};

BenchFolder& folder() {
  static BenchFolder instance;
  return instance;
}

void reportFileSize(benchmark::State& state) {
  state.counters["fileMB"] = folder().fileSize() / 1e6;
}

void BM_Load(benchmark::State& state) {
  const LocalStore local(folder().stateFile());
  for (auto _ : state) benchmark::DoNotOptimize(local.load());
  reportFileSize(state);
}

void BM_SnapshotUnchanged(benchmark::State& state) {
  TaskStore store(LocalStore(folder().stateFile()));
  for (auto _ : state) benchmark::DoNotOptimize(store.snapshot());
  reportFileSize(state);
}

void BM_SnapshotAfterChange(benchmark::State& state) {
  const fs::path file = folder().stateFile();
  TaskStore store{LocalStore(file)};
  struct timespec times[2] = {{0, UTIME_OMIT}, {1'700'000'000, 0}};
  for (auto _ : state) {
    state.PauseTiming();
    // A new modification time is a new version of the file to the store.
    ++times[1].tv_nsec;
    if (::utimensat(AT_FDCWD, file.c_str(), times, 0) != 0) state.SkipWithError("utimensat");
    state.ResumeTiming();
    benchmark::DoNotOptimize(store.snapshot());
  }
  reportFileSize(state);
}

// Reading the file, writing the same bytes to another file and flushing it to disk, once.
void BM_ReadWriteFsync(benchmark::State& state) {
  const fs::path file = folder().stateFile();
  const fs::path copy = file.parent_path() / "baseline.json";
  for (auto _ : state) {
    const FileContents contents = readWholeFile(file);
    FileDescriptor out(::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    std::string_view bytes = contents.bytes;
    while (!bytes.empty()) {
      const ssize_t count = ::write(out.get(), bytes.data(), bytes.size());
      if (count <= 0) {
        state.SkipWithError("write");
        break;
      }
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (::fsync(out.get()) != 0) state.SkipWithError("fsync");
  }
  fs::remove(copy);
  reportFileSize(state);
}

void BM_Transact(benchmark::State& state) {
  TaskStore store(LocalStore(folder().stateFile()));
  std::int64_t revision = store.snapshot().revision();
  for (auto _ : state) {
    const TaskStoreSnapshot committed =
        store.transact(revision, MutationSource::user, "task.update", std::nullopt,
                       Instant(8e8 + static_cast<double>(revision)),
                       [](PersistedState& document) { document.tasks.back().notes += "."; });
    revision = committed.revision();
    state.PauseTiming();
    folder().removeRecoveryCopies();
    state.ResumeTiming();
  }
  reportFileSize(state);
}

BENCHMARK(BM_Load)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_SnapshotUnchanged)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_SnapshotAfterChange)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_ReadWriteFsync)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_Transact)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The console output, followed by each measurement set against its baseline and its goal.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(::isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& reports) override {
    ConsoleReporter::ReportRuns(reports);
    for (const Run& run : reports) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      // Every benchmark here reports in microseconds.
      microseconds_[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n");
    absolute("BM_SnapshotUnchanged", 50.0);
    ratio("BM_SnapshotAfterChange", "BM_Load", 1.5);
    ratio("BM_Transact", "BM_ReadWriteFsync", 3.0);
  }

 private:
  void absolute(const std::string& name, double goal) {
    if (!microseconds_.contains(name)) return;
    const double value = microseconds_[name];
    std::printf("%-24s %10.2f us                      goal < %.0f us   %s\n", name.c_str(), value,
                goal, value < goal ? "met" : "MISSED");
  }

  void ratio(const std::string& name, const std::string& baseline, double goal) {
    if (!microseconds_.contains(name) || !microseconds_.contains(baseline)) return;
    const double value = microseconds_[name] / microseconds_[baseline];
    std::printf("%-24s %10.2fx of %-20s goal <= %.1fx   %s\n", name.c_str(), value,
                baseline.c_str(), goal, value <= goal ? "met" : "MISSED");
  }

  std::map<std::string, double> microseconds_;
};

}  // namespace
}  // namespace brindlet::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  brindlet::bench::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

// Reading and writing a large state file, each against the bare cost of the same bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "RatioReporter.h"
#include "StateFileGenerator.h"
#include "TemporaryFolder.h"
#include "persistence/LocalStore.h"
#include "support/Files.h"

namespace brindlet::bench {
namespace {

namespace fs = std::filesystem;

// A temporary folder holding the generated state file for the whole run.
struct Fixture {
  TemporaryFolder temporary;
  fs::path folder = temporary.path();
  LocalStore store;
  PersistedState state;
  std::string bytes;

  Fixture()
      : store(folder / "state.json"),
        state(generateState(kLargePlanTasks, kLargePlanAuditEvents, kLargePlanSeed)) {
    store.save(state);
    bytes = readWholeFile(store.url()).bytes;
  }
};

Fixture& fixture() {
  static Fixture instance;
  return instance;
}

void BM_SimdjsonParse(benchmark::State& loop) {
  const simdjson::padded_string padded(fixture().bytes);
  simdjson::dom::parser parser;
  for (auto _ : loop) {
    simdjson::dom::element root;
    if (parser.parse(padded).get(root) != simdjson::SUCCESS) loop.SkipWithError("parse");
    benchmark::DoNotOptimize(root);
  }
  loop.SetBytesProcessed(std::int64_t(loop.iterations()) * std::int64_t(padded.size()));
}
BENCHMARK(BM_SimdjsonParse)->Unit(benchmark::kMillisecond);

void BM_SimdjsonReadAndParse(benchmark::State& loop) {
  simdjson::dom::parser parser;
  for (auto _ : loop) {
    simdjson::dom::element root;
    if (parser.load(fixture().store.url()).get(root) != simdjson::SUCCESS) {
      loop.SkipWithError("load");
    }
    benchmark::DoNotOptimize(root);
  }
}
BENCHMARK(BM_SimdjsonReadAndParse)->Unit(benchmark::kMillisecond);

void BM_LocalStoreLoad(benchmark::State& loop) {
  for (auto _ : loop) {
    PersistedState state = fixture().store.load();
    benchmark::DoNotOptimize(state);
  }
  loop.counters["tasks"] = double(fixture().state.tasks.size());
  loop.counters["MB"] = double(fixture().bytes.size()) / 1e6;
}
BENCHMARK(BM_LocalStoreLoad)->Unit(benchmark::kMillisecond);

void BM_WriteBytesWithFsync(benchmark::State& loop) {
  const fs::path target = fixture().folder / "plain.json";
  for (auto _ : loop) {
    const FileDescriptor file(::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600));
    std::string_view rest = fixture().bytes;
    while (!rest.empty()) {
      const ssize_t count = ::write(file.get(), rest.data(), rest.size());
      if (count <= 0) {
        loop.SkipWithError("write");
        break;
      }
      rest.remove_prefix(std::size_t(count));
    }
    ::fsync(file.get());
  }
}
BENCHMARK(BM_WriteBytesWithFsync)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LocalStoreSave(benchmark::State& loop) {
  for (auto _ : loop) {
    fixture().store.save(fixture().state);
    loop.PauseTiming();
    // Every save keeps a 9 MB recovery copy; clear them so the run doesn't fill the disk.
    fs::remove_all(fixture().store.recoveryFolder());
    loop.ResumeTiming();
  }
}
BENCHMARK(BM_LocalStoreSave)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_EncodeState(benchmark::State& loop) {
  for (auto _ : loop) benchmark::DoNotOptimize(encodeState(fixture().state));
}
BENCHMARK(BM_EncodeState)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlet::bench

int main(int argc, char** argv) {
  return brindlet::bench::runWithRatios(
      argc, argv,
      {{"BM_LocalStoreLoad", "BM_SimdjsonParse"},
       {"BM_LocalStoreLoad", "BM_SimdjsonReadAndParse"},
       {"BM_LocalStoreSave/real_time", "BM_WriteBytesWithFsync/real_time"}});
}

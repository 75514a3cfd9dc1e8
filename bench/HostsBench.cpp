// Applying and removing the managed block on a large hosts file, each against reading and
// writing the same file in the same run. Run:
//   build/bench/hosts_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "blocking/DomainRules.h"
#include "blocking/HostsDocument.h"
#include "support/Files.h"

namespace {

namespace fs = std::filesystem;
using brindlet::HostsDocument;
using brindlet::bench::TemporaryFolder;

#ifndef BRINDLET_LARGE_HOSTS_FILE
#define BRINDLET_LARGE_HOSTS_FILE ""
#endif

constexpr int kGeneratedLines = 100'000;

// A blocklist-style file like the published ones, for machines without the real one.
std::string generatedHosts() {
  std::string text = "# generated hosts file\n127.0.0.1 localhost\n::1 localhost\n\n";
  for (int i = 0; i < kGeneratedLines; ++i) {
    text +=
        "0.0.0.0 tracker" + std::to_string(i) + ".ads-example" + std::to_string(i % 97) + ".com\n";
  }
  return text;
}

// The working folder, the large file in it and the same file with a block applied.
struct Files {
  TemporaryFolder temporary;
  fs::path folder;
  fs::path plain;
  fs::path applied;
  fs::path output;
  std::vector<std::string> hosts;
  std::size_t lines = 0;

  Files() {
    folder = temporary.path();
    plain = folder / "hosts";
    applied = folder / "hosts.applied";
    output = folder / "hosts.out";

    const fs::path large = BRINDLET_LARGE_HOSTS_FILE;
    std::string text;
    if (!large.empty() && fs::exists(large)) {
      text = brindlet::readWholeFile(large).bytes;
    } else {
      text = generatedHosts();
    }
    for (const char c : text) lines += c == '\n';
    hosts = brindlet::DomainRules::expandedHosts(
        {"facebook.com", "instagram.com", "tiktok.com", "twitter.com", "x.com"});
    brindlet::writeFileAtomically(plain, text);
    brindlet::writeFileAtomically(applied, HostsDocument(text).applying(hosts));
  }
};

const Files& files() {
  static const Files shared;
  return shared;
}

// Writes the bytes in place, as the privileged copy does; no flush to disk, so that the disk's
// flush time doesn't hide the cost of the text work.
void writeBytes(const fs::path& path, const std::string& bytes) {
  const brindlet::FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644));
  if (!file.isOpen()) throw std::runtime_error("open failed");
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(file.get(), bytes.data() + written, bytes.size() - written);
    if (count <= 0) throw std::runtime_error("write failed");
    written += static_cast<std::size_t>(count);
  }
}

void setCounters(benchmark::State& state) {
  state.counters["lines"] = static_cast<double>(files().lines);
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(fs::file_size(files().plain)));
}

void BM_ReadAndWrite(benchmark::State& state) {
  for (auto _ : state) {
    const std::string text = brindlet::readWholeFile(files().plain).bytes;
    writeBytes(files().output, text);
  }
  setCounters(state);
}

void BM_ReadApplyWrite(benchmark::State& state) {
  for (auto _ : state) {
    std::string text = brindlet::readWholeFile(files().plain).bytes;
    writeBytes(files().output, HostsDocument(std::move(text)).applying(files().hosts));
  }
  setCounters(state);
}

void BM_ReadRemoveWrite(benchmark::State& state) {
  for (auto _ : state) {
    std::string text = brindlet::readWholeFile(files().applied).bytes;
    writeBytes(files().output, HostsDocument(std::move(text)).removingManagedBlock());
  }
  setCounters(state);
}

void BM_ApplyOnly(benchmark::State& state) {
  const std::string text = brindlet::readWholeFile(files().plain).bytes;
  for (auto _ : state) {
    benchmark::DoNotOptimize(HostsDocument(text).applying(files().hosts));
  }
  setCounters(state);
}

void BM_RemoveOnly(benchmark::State& state) {
  const std::string text = brindlet::readWholeFile(files().applied).bytes;
  for (auto _ : state) benchmark::DoNotOptimize(HostsDocument(text).removingManagedBlock());
  setCounters(state);
}

void BM_ManagedHosts(benchmark::State& state) {
  const std::string text = brindlet::readWholeFile(files().applied).bytes;
  for (auto _ : state) benchmark::DoNotOptimize(HostsDocument(text).managedHosts());
  setCounters(state);
}

BENCHMARK(BM_ReadAndWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadApplyWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRemoveWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ApplyOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RemoveOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ManagedHosts)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

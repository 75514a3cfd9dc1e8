// The heartbeat runs every second while the window is open: it reads the time, lets a session
// end, looks at the state file and publishes the model's state. On a plan of years these show
// what one costs when the file hasn't changed (goal: under 100 us) and when it has (goal: within
// 2x of a plain load of the file). Every published state is copied, as the host that hands it to
// the screens does. The start-up pass, which the window waits for before it shows the plan, is
// set against the same plain load.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "RatioReporter.h"
#include "StateFileGenerator.h"
#include "TemporaryFolder.h"
#include "app/AppModel.h"
#include "blocking/BlockingError.h"
#include "persistence/LocalStore.h"
#include "support/Clock.h"
#include "support/Files.h"

namespace brindlet::bench {
namespace {

namespace fs = std::filesystem;

// Nothing here starts a session, so nothing may ask for approval.
class RefusingRunner : public PrivilegedCommandRunning {
 public:
  void replace(const fs::path&, const fs::path&) override {
    throw BlockingError::authorizationCancelled();
  }
  void refreshDNS() override {}
};

class SilentScheduler : public ReminderScheduling {
 public:
  ReminderAuthorization authorizationStatus() override { return ReminderAuthorization::denied; }
  bool requestAuthorization() override { return false; }
  void schedule(const std::vector<ReminderRequest>&) override {}
  void cancel(const Uuid&) override {}
};

// A temporary folder standing in for both platform folders, with the generated state file and a
// hosts file of its own.
class BenchFolder {
 public:
  BenchFolder() {
    LocalStore(folders().stateFile())
        .save(generateState(kLargePlanTasks, kLargePlanAuditEvents, kLargePlanSeed));
    writeFileAtomically(hostsPath(), "127.0.0.1 localhost\n");
  }

  [[nodiscard]] PlatformFolders folders() const {
    return {.applicationSupport = path_ / "Application Support", .documents = path_ / "Documents"};
  }
  [[nodiscard]] fs::path hostsPath() const { return path_ / "hosts"; }

  [[nodiscard]] std::unique_ptr<AppModel> makeModel() const {
    auto model = AppModel::compose(AppModel::Composition{
        .folders = folders(),
        .hostsPath = hostsPath(),
        .runner = std::make_shared<RefusingRunner>(),
        .scheduler = std::make_shared<SilentScheduler>(),
        .clock = std::make_shared<SystemClock>(),
        .calendar = Calendar("UTC", Calendar::kMonday, "en_US"),
    });
    model->recover();
    return model;
  }

 private:
  TemporaryFolder temporary_;
  fs::path path_ = temporary_.path();
};

BenchFolder& folder() {
  static BenchFolder instance;
  return instance;
}

void BM_Load(benchmark::State& state) {
  const LocalStore local(folder().folders().stateFile());
  for (auto _ : state) benchmark::DoNotOptimize(local.load());
}

void BM_HeartbeatUnchanged(benchmark::State& state) {
  const auto model = folder().makeModel();
  std::optional<AppModelState> screens;
  model->setOnChange([&](const AppModelState& published) { screens = published; });
  for (auto _ : state) model->heartbeat();
  benchmark::DoNotOptimize(screens);
}

void BM_HeartbeatAfterChange(benchmark::State& state) {
  const fs::path file = folder().folders().stateFile();
  const auto model = folder().makeModel();
  std::optional<AppModelState> screens;
  model->setOnChange([&](const AppModelState& published) { screens = published; });
  struct timespec times[2] = {{0, UTIME_OMIT}, {1'700'000'000, 0}};
  for (auto _ : state) {
    state.PauseTiming();
    // A new modification time is a new version of the file, which the heartbeat reads whole.
    ++times[1].tv_nsec;
    if (::utimensat(AT_FDCWD, file.c_str(), times, 0) != 0) state.SkipWithError("utimensat");
    state.ResumeTiming();
    model->heartbeat();
  }
  benchmark::DoNotOptimize(screens);
}

// What the app does on the model thread at launch, before its window shows the plan: compose the
// model over the file and run the start-up pass.
void BM_StartUp(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(folder().makeModel());
}

BENCHMARK(BM_Load)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_StartUp)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_HeartbeatUnchanged)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_HeartbeatAfterChange)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace brindlet::bench

int main(int argc, char** argv) {
  return brindlet::bench::runWithRatios(argc, argv,
                                        {{"BM_HeartbeatAfterChange/real_time", "BM_Load/real_time"},
                                         {"BM_StartUp/real_time", "BM_Load/real_time"}});
}

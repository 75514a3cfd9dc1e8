// A seeded simulation of plausible days of use on a fixed clock, with a restart each week and a
// second writer now and then; every invariant of the files holds after every step.
//
// The default run is the first month. BRINDLET_SIMULATED_DAYS=365 runs the whole year, and
// BRINDLET_SIMULATION_SEED picks another sequence of days.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "AppModelWorld.h"
#include "Builders.h"
#include "persistence/TaskStore.h"

namespace brindlet::testing {
namespace {

namespace fs = std::filesystem;

constexpr double kDay = 86400;
constexpr double kMinute = 60;

std::int64_t environmentNumber(const char* name, std::int64_t fallback) {
  const char* text = std::getenv(name);
  return text == nullptr ? fallback : std::strtoll(text, nullptr, 10);
}

std::uintmax_t folderBytes(const fs::path& folder) {
  std::uintmax_t total = 0;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.is_regular_file()) total += entry.file_size();
  }
  return total;
}

class Simulation {
 public:
  explicit Simulation(std::uint64_t seed) : random_(seed) {}

  void run(int days) {
    world_.store(PersistedState::initial());
    world_.launch();
    const Instant firstMorning = kTestNow.advanced(-1.5 * 3600);  // 08:00 on the first day
    for (int day = 0; day < days && !::testing::Test::HasFatalFailure(); ++day) {
      day_ = day;
      world_.clock->set(firstMorning.advanced(day * kDay));
      if (day > 0 && day % 7 == 0) step("restart", [&] { world_.relaunch(); });
      step("morning heartbeat", [&] { model().heartbeat(); });
      step("select today", [&] { model().setSelectedDay(LocalDay(now(), world_.calendar)); });
      step("daily backup", [&] { model().createDailyBackup(); });
      playOneDay();
      if (HasFailureNow()) return;
    }
  }

  [[nodiscard]] AppModelWorld& world() { return world_; }

 private:
  static bool HasFailureNow() { return ::testing::Test::HasFailure(); }

  AppModel& model() { return world_.model(); }
  Instant now() const { return world_.clock->now(); }
  bool chance(double p) { return std::bernoulli_distribution(p)(random_); }
  int between(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }

  void pass(double minutes) {
    world_.clock->advance(minutes * kMinute);
    step("heartbeat", [&] { model().heartbeat(); });
  }

  std::vector<FocusTask> open(bool todayOnly) {
    std::vector<FocusTask> found;
    for (const FocusTask& task :
         todayOnly ? model().state().selectedDayTasks() : model().state().tasks()) {
      if (task.status == TaskStatus::pending || task.status == TaskStatus::paused) {
        found.push_back(task);
      }
    }
    return found;
  }

  std::optional<FocusTask> anyOpen(bool todayOnly = true) {
    const std::vector<FocusTask> tasks = open(todayOnly);
    if (tasks.empty()) return std::nullopt;
    return tasks[static_cast<std::size_t>(between(0, static_cast<int>(tasks.size()) - 1))];
  }

  void playOneDay() {
    for (int n = between(1, 4); n > 0; --n) {
      step("add", [&] {
        model().setQuickTitle("Day " + std::to_string(day_) + " task " + std::to_string(n));
        model().addTask();
      });
    }
    if (auto task = anyOpen(); task && chance(0.6)) {
      step("edit", [&] {
        task->notes = "Notes of day " + std::to_string(day_);
        task->estimatedMinutes = between(1, 6) * 15;
        if (chance(0.4)) task->blockingGroupID = model().state().groups.front().id;
        if (chance(0.3)) {
          task->scheduledStart = now().advanced(between(1, 8) * 3600.0);
          task->reminder = TaskReminder{.isEnabled = true, .remindTenMinutesBefore = true};
        }
        model().saveTask(*task);
      });
    }
    if (auto task = anyOpen(); task && chance(0.3)) {
      step("move", [&] {
        model().moveTask(*task, LocalDay(now().advanced(between(1, 3) * kDay), world_.calendar));
      });
    }
    if (const std::vector<FocusTask> today = open(true); today.size() >= 2 && chance(0.5)) {
      step("reorder", [&] { model().reorderTask(today.back().id, today.front().id); });
    }
    if (chance(0.1)) secondWriter();
    for (int session = between(0, 3); session > 0; --session) work();
    if (chance(0.15)) blockWithoutATask();
    if (chance(0.05)) {
      // A second writer commits between the last heartbeat and a command: the command is
      // refused as stale and the next heartbeat shows the other writer's change.
      secondWriter(false);
      if (auto task = anyOpen()) {
        step(
            "stale move", [&] { model().moveTask(*task, LocalDay(now(), world_.calendar)); }, true);
      }
      step("heartbeat after a race", [&] {
        model().clearEditorError();
        model().heartbeat();
      });
    }
    // The first day is a Saturday, so each Sunday is a review day.
    if (day_ % 7 == 1) review();
    if (day_ % 10 == 9) {
      step("export", [&] {
        model().exportBackup(world_.root / "Exports" / ("plan-" + std::to_string(day_) + ".json"));
      });
    }
    // Evening: whatever still runs is left paused for the next day, or completed.
    pass(between(30, 120));
    if (model().state().activeTask()) {
      if (chance(0.5) || strictSessionRuns()) {
        step("evening complete", [&] { model().completeTask(*model().state().activeTask()); });
      } else if (model().state().activeTask()->status == TaskStatus::active) {
        step("evening pause", [&] { model().pauseActiveTask(); });
      }
    }
  }

  void work() {
    std::optional<FocusTask> task;
    if (auto active = model().state().activeTask();
        active && active->status == TaskStatus::paused) {
      task = active;
    } else if (!active) {
      task = anyOpen();
    }
    if (!task) return;
    // A session still running holds the next start back; the user waits for its end.
    if (const auto& session = model().state().activeSession) {
      pass(session->endsAt.since(now()) / kMinute + 1);
    }
    model().setSelectedMode(chance(0.2) ? SessionMode::strict : SessionMode::flexible);
    step(task->status == TaskStatus::paused ? "resume" : "start",
         [&] { model().startTask(*task); });
    pass(between(5, 50));
    const int choice = between(0, 9);
    const std::optional<FocusTask> running = model().state().activeTask();
    if (!running || running->status != TaskStatus::active) return;
    const bool strict = strictSessionRuns();
    if (choice < 5) {
      step("complete", [&] { model().completeTask(*running); });
    } else if (choice < 8 && !strict) {
      step("pause", [&] { model().pauseActiveTask(); });
    } else if (!strict) {
      step("skip", [&] { model().skipActiveTask(); });
    } else {
      // A strict session holds the task until its end; the work runs out the clock.
      pass(90);
      step("complete after strict", [&] { model().completeTask(*running); });
    }
  }

  bool strictSessionRuns() {
    const auto& session = model().state().activeSession;
    return session && session->mode == SessionMode::strict && now() < session->endsAt;
  }

  void blockWithoutATask() {
    if (model().state().activeSession) return;
    model().setSelectedMode(SessionMode::flexible);
    model().setDurationChoice(DurationChoice::twentyFive);
    step("start blocking", [&] { model().start(); });
    if (chance(0.5)) {
      pass(10);
      step("end blocking", [&] { model().endFlexible(); });
    } else {
      pass(26);  // the session ends at its time, on a heartbeat
    }
  }

  void review() {
    step("generate recommendations", [&] { model().generateRecommendations(); });
    const std::vector<PlanningProposal> pending = model().state().pendingProposals();
    for (const PlanningProposal& proposal : pending) {
      if (chance(0.5)) {
        step("approve", [&] { model().approveProposal(proposal); });
      } else {
        step("dismiss", [&] { model().dismissProposal(proposal); });
      }
    }
    step("previous week", [&] { model().changeReviewWeek(-1); });
    step("this week", [&] { model().changeReviewWeek(1); });
  }

  // Another program's transaction on the same file, through a store of its own.
  void secondWriter(bool thenHeartbeat = true) {
    step("second writer", [&] {
      TaskStore other{LocalStore(world_.folders.stateFile())};
      const TaskStoreSnapshot current = other.snapshot();
      const FocusTask added("Added elsewhere on day " + std::to_string(day_), now(),
                            FocusTask::Fields{.plannedDay = LocalDay(now(), world_.calendar)});
      (void)other.transact(current.revision(), MutationSource::agent, "task.create", added.id,
                           now(), [&](PersistedState& state) { state.tasks.push_back(added); });
      if (thenHeartbeat) model().heartbeat();
    });
  }

  // Runs one step of the day and checks every invariant after it.
  void step(const std::string& name, const std::function<void()>& action,
            bool mayBeRefused = false) {
    if (HasFailureNow()) return;
    action();
    const std::string where = "day " + std::to_string(day_) + ", " + name;
    const AppModelState& state = model().state();
    if (!mayBeRefused && state.editorError) {
      ADD_FAILURE() << where << ": " << *state.editorError;
      model().clearEditorError();
    }
    const std::vector<FocusTask>& tasks = state.tasks();
    EXPECT_LE(
        std::count_if(tasks.begin(), tasks.end(),
                      [](const FocusTask& task) { return task.status == TaskStatus::active; }),
        1)
        << where;
    EXPECT_EQ(problemsWithFilesOf(world_, &knownWhole_), std::vector<std::string>{}) << where;
  }

  AppModelWorld world_{FileService::system()};
  std::mt19937_64 random_;
  std::set<fs::path> knownWhole_;
  int day_ = 0;
};

TEST(AppModelYearTest, DaysOfUseKeepEveryInvariant) {
  const auto days = static_cast<int>(environmentNumber("BRINDLET_SIMULATED_DAYS", 30));
  const auto seed = static_cast<std::uint64_t>(environmentNumber("BRINDLET_SIMULATION_SEED", 2026));
  Simulation simulation(seed);
  simulation.run(days);
  ASSERT_FALSE(HasFailure());

  AppModelWorld& world = simulation.world();
  // Heartbeats at the end, on the file the simulated days leave behind: one on a file nobody
  // changed, and one that has to read the file again after another writer's change.
  const auto timedHeartbeat = [&] {
    world.clock->advance(1);
    const auto started = std::chrono::steady_clock::now();
    world.model().heartbeat();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
        .count();
  };
  (void)timedHeartbeat();
  const double heartbeat = timedHeartbeat();
  {
    const LocalStore other(world.folders.stateFile());
    other.updateAtomically([](PersistedState& state) { state.preferences = state.preferences; });
  }
  const double heartbeatAfterAChange = timedHeartbeat();
  const PersistedState state = world.stored();
  std::cout << days << " simulated days (seed " << seed << "): revision " << state.revision << ", "
            << state.tasks.size() << " tasks, state file "
            << fs::file_size(world.folders.stateFile()) << " bytes, \"State Backups\" "
            << filesIn(world.local().recoveryFolder()).size() << " files, "
            << folderBytes(world.local().recoveryFolder()) << " bytes, daily backups "
            << filesIn(world.folders.dailyBackupFolder()).size() << " files, "
            << world.runner->calls.size() << " hosts file swaps; heartbeat " << heartbeat
            << " ms on an unchanged file, " << heartbeatAfterAChange
            << " ms after another writer's change\n";
  EXPECT_EQ(filesIn(world.folders.dailyBackupFolder()).size(), static_cast<std::size_t>(days));
}

}  // namespace
}  // namespace brindlet::testing

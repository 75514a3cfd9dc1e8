// The weekly review reads every task once. Its cost is set against the cheapest possible pass
// over the same tasks, and against looking up each task's day through the calendar, which the
// review avoids.
#include <benchmark/benchmark.h>

#include "RatioReporter.h"
#include "StateFileGenerator.h"
#include "review/RecommendationEngine.h"

namespace brindlet::bench {
namespace {

constexpr std::size_t kFiveYearsOfTasks = 18'000;

const std::vector<FocusTask>& tasks() {
  static const std::vector<FocusTask> all = generateState(kFiveYearsOfTasks, 0, 11).tasks;
  return all;
}

const Calendar& calendar() {
  static const Calendar berlin("Europe/Berlin", Calendar::kMonday);
  return berlin;
}

const Instant kReviewDate = *Instant::fromIso8601("2026-03-26T12:00:00Z");

void BM_BarePassOverTasks(benchmark::State& loop) {
  for (auto _ : loop) {
    std::int64_t minutes = 0;
    for (const FocusTask& task : tasks()) {
      if (task.plannedDay && task.plannedDay->month == 3)
        minutes += task.estimatedMinutes.value_or(0);
    }
    benchmark::DoNotOptimize(minutes);
  }
  loop.counters["tasks"] = double(tasks().size());
}
BENCHMARK(BM_BarePassOverTasks)->Unit(benchmark::kMicrosecond);

void BM_CalendarDayOfEveryTask(benchmark::State& loop) {
  for (auto _ : loop) {
    std::int64_t inside = 0;
    const DateInterval week = calendar().weekInterval(kReviewDate);
    for (const FocusTask& task : tasks()) {
      const auto start = task.plannedDay ? task.plannedDay->date(calendar()) : std::nullopt;
      if (start && week.start <= *start && *start <= week.end) ++inside;
    }
    benchmark::DoNotOptimize(inside);
  }
}
BENCHMARK(BM_CalendarDayOfEveryTask)->Unit(benchmark::kMicrosecond);

void BM_WeeklyReview(benchmark::State& loop) {
  for (auto _ : loop) {
    WeeklyReview review = RecommendationEngine::review(kReviewDate, tasks(), calendar());
    benchmark::DoNotOptimize(review);
  }
  loop.counters["planned"] =
      double(RecommendationEngine::review(kReviewDate, tasks(), calendar()).plannedTaskCount);
}
BENCHMARK(BM_WeeklyReview)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace brindlet::bench

int main(int argc, char** argv) {
  return brindlet::bench::runWithRatios(argc, argv,
                                        {{"BM_WeeklyReview", "BM_BarePassOverTasks"},
                                         {"BM_WeeklyReview", "BM_CalendarDayOfEveryTask"}});
}

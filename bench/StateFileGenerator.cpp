#include "StateFileGenerator.h"

#include <array>
#include <random>
#include <string>

namespace brindlet::bench {
namespace {

constexpr std::array<const char*, 12> kWords = {"Draft", "review", "report", "call",
                                                "plan",  "budget", "email",  "design",
                                                "notes", "fix",    "sprint", "write"};

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  Uuid uuid() {
    std::array<std::uint8_t, 16> bytes{};
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random_());
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return Uuid(bytes);
  }

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  std::string words(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
      if (i > 0) text += ' ';
      text += kWords[static_cast<std::size_t>(below(int(kWords.size())))];
    }
    return text;
  }

  FocusTask task(std::size_t index, std::size_t total) {
    // Spread over five years, about four tasks a day.
    const double created = 757'000'000.0 + double(index) * (5 * 365 * 86400.0) / double(total);
    FocusTask task(words(3 + below(4)), Instant(created));
    task.id = uuid();
    task.notes = words(10 + below(40));
    const std::int64_t dayNumber = static_cast<std::int64_t>(created / 86400.0);
    task.plannedDay = LocalDay{2024 + dayNumber / 365 % 5, 1 + dayNumber % 12, 1 + dayNumber % 28};
    if (below(2) == 0) task.scheduledStart = Instant(created + 3600.0 * below(10));
    task.estimatedMinutes = 15 * (1 + below(8));
    task.priority = kAllTaskPriorities[static_cast<std::size_t>(below(4))];
    task.manualPosition = below(20);
    task.status = static_cast<TaskStatus>(below(5));
    if (below(3) == 0) task.reminder = TaskReminder{true, below(2) == 0, true};
    if (below(4) == 0) task.blockingGroupID = DomainGroup::socialDistractions().id;
    task.updatedAt = Instant(created + 60.5 * below(500));
    task.startedAt = Instant(created + 120.25);
    if (task.status == TaskStatus::completed) task.completedAt = Instant(created + 3000.75);
    if (below(5) == 0) {
      task.lastSkippedAt = Instant(created + 500.5);
      task.skipCount = 1 + below(3);
    }
    task.accumulatedFocusSeconds = below(7200) + 0.123456789;
    return task;
  }

  TaskAuditEvent event(const std::vector<FocusTask>& tasks, std::size_t index) {
    static constexpr std::array<const char*, 6> kActions = {
        "task.create", "task.update", "task.start", "task.pause", "task.complete", "task.move"};
    const FocusTask& task = tasks[index % tasks.size()];
    return {.id = uuid(),
            .timestamp = task.createdAt.advanced(double(index % 97) * 31.5),
            .source = static_cast<MutationSource>(below(3)),
            .action = kActions[static_cast<std::size_t>(below(int(kActions.size())))],
            .taskID = task.id};
  }

 private:
  std::mt19937 random_;
};

}  // namespace

PersistedState generateState(std::size_t tasks, std::size_t auditEvents, std::uint32_t seed) {
  Generator generator(seed);
  PersistedState state = PersistedState::initial();
  state.tasks.reserve(tasks);
  for (std::size_t i = 0; i < tasks; ++i) state.tasks.push_back(generator.task(i, tasks));
  state.auditEvents.reserve(auditEvents);
  for (std::size_t i = 0; i < auditEvents && !state.tasks.empty(); ++i) {
    state.auditEvents.push_back(generator.event(state.tasks, i));
  }
  state.revision = static_cast<std::int64_t>(auditEvents);
  return state;
}

}  // namespace brindlet::bench

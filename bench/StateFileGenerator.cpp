#include "StateFileGenerator.h"

#include <array>
#include <random>
#include <string>

namespace brindlet::bench {
namespace {

constexpr std::array<std::string_view, 12> kWords = {"review",  "draft", "call",   "budget",
                                                     "design",  "notes", "plan",   "report",
                                                     "release", "email", "follow", "refactor"};

constexpr std::array<std::string_view, 6> kActions = {"task.create", "task.update",   "task.start",
                                                      "task.pause",  "task.complete", "task.skip"};

std::array<std::uint8_t, 16> randomBytes(std::mt19937& random) {
  std::array<std::uint8_t, 16> bytes{};
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  return bytes;
}

std::string words(std::mt19937& random, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (!text.empty()) text += ' ';
    text += kWords[random() % kWords.size()];
  }
  return text;
}

}  // namespace

PersistedState generateState(std::size_t tasks, std::size_t auditEvents, std::uint32_t seed) {
  std::mt19937 random(seed);
  PersistedState state = PersistedState::initial();
  const Instant start = Instant::fromUnix(1640995200.0);  // 2022-01-01
  state.tasks.reserve(tasks);
  for (std::size_t i = 0; i < tasks; ++i) {
    const Instant created = start.advanced(static_cast<double>(i) * 13000.0);
    FocusTask task(words(random, 3) + " " + std::to_string(i), created);
    task.id = Uuid(randomBytes(random));
    task.notes = words(random, static_cast<int>(random() % 8));
    task.plannedDay = LocalDay{2022 + static_cast<std::int64_t>(i / 2400),
                               1 + static_cast<std::int64_t>(random() % 12),
                               1 + static_cast<std::int64_t>(random() % 28)};
    if (random() % 3 == 0) task.scheduledStart = created.advanced(86400.0);
    task.estimatedMinutes = static_cast<std::int64_t>(random() % 240);
    task.priority = kAllTaskPriorities[random() % kAllTaskPriorities.size()];
    task.manualPosition = static_cast<std::int64_t>(random() % 12);
    task.status = i + 50 < tasks ? TaskStatus::completed : TaskStatus::pending;
    if (random() % 2 == 0) task.reminder = TaskReminder{};
    task.updatedAt = created.advanced(3600.5);
    task.startedAt = created.advanced(600.25);
    if (task.status == TaskStatus::completed) task.completedAt = created.advanced(4200.75);
    task.skipCount = static_cast<std::int64_t>(random() % 3);
    if (task.skipCount > 0) task.lastSkippedAt = created.advanced(1800.0);
    task.accumulatedFocusSeconds = static_cast<double>(random() % 7200) + 0.125;
    state.tasks.push_back(std::move(task));
  }
  state.auditEvents.reserve(auditEvents);
  for (std::size_t i = 0; i < auditEvents; ++i) {
    TaskAuditEvent event;
    event.id = Uuid(randomBytes(random));
    event.timestamp = start.advanced(static_cast<double>(i) * 3700.5);
    event.source = static_cast<MutationSource>(random() % 3);
    event.action = kActions[random() % kActions.size()];
    if (!state.tasks.empty()) event.taskID = state.tasks[random() % state.tasks.size()].id;
    state.auditEvents.push_back(std::move(event));
  }
  state.revision = static_cast<std::int64_t>(auditEvents);
  return state;
}

}  // namespace brindlet::bench

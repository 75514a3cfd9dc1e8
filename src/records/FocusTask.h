#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "records/EnumText.h"
#include "records/LocalDay.h"
#include "support/BrindletError.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// How urgent a task is; the declaration order is the sort order.
enum class TaskPriority { critical, high, normal, low };

inline constexpr std::array<TaskPriority, 4> kAllTaskPriorities = {
    TaskPriority::critical, TaskPriority::high, TaskPriority::normal, TaskPriority::low};

inline constexpr EnumText<TaskPriority, 4> kTaskPriorityText{{{
    {TaskPriority::critical, "critical"},
    {TaskPriority::high, "high"},
    {TaskPriority::normal, "normal"},
    {TaskPriority::low, "low"},
}}};

/// The place of a priority in kAllTaskPriorities; a lower rank sorts earlier.
[[nodiscard]] constexpr int rank(TaskPriority priority) {
  int index = 0;
  for (const TaskPriority candidate : kAllTaskPriorities) {
    if (candidate == priority) return index;
    ++index;
  }
  return index;
}

/// Where a task stands in its life.
enum class TaskStatus { pending, active, paused, completed, archived };

inline constexpr EnumText<TaskStatus, 5> kTaskStatusText{{{
    {TaskStatus::pending, "pending"},
    {TaskStatus::active, "active"},
    {TaskStatus::paused, "paused"},
    {TaskStatus::completed, "completed"},
    {TaskStatus::archived, "archived"},
}}};

/// Which notifications a scheduled task asks for.
struct TaskReminder {
  bool isEnabled = true;
  bool remindTenMinutesBefore = false;
  bool remindWhenOverdue = true;
  friend bool operator==(const TaskReminder&, const TaskReminder&) = default;
};

/// A task that can't be stored as it stands.
class ProductivityValidationError : public BrindletError {
 public:
  enum class Case { blankTitle, invalidEstimate };
  explicit ProductivityValidationError(Case which) : case_(which) {}
  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::string description() const override;

 private:
  Case case_;
};

/// Every field but the title and the creation time, with the defaults of a new task.
struct FocusTaskFields {
  std::optional<Uuid> id{};  // a fresh one when absent
  std::string notes{};
  std::optional<LocalDay> plannedDay{};
  std::optional<Instant> scheduledStart{};
  std::optional<std::int64_t> estimatedMinutes{};
  TaskPriority priority = TaskPriority::normal;
  std::int64_t manualPosition = 0;
  TaskStatus status = TaskStatus::pending;
  std::optional<TaskReminder> reminder{};
  std::optional<Uuid> blockingGroupID{};
  std::optional<Instant> updatedAt{};  // createdAt when absent
  std::optional<Instant> startedAt{};
  std::optional<Instant> completedAt{};
  std::optional<Instant> lastSkippedAt{};
  std::int64_t skipCount = 0;
  double accumulatedFocusSeconds = 0;
  std::optional<Instant> activeSegmentStartedAt{};
};

/// One task of the plan, with its schedule and its measured focus time.
struct FocusTask {
  using Fields = FocusTaskFields;

  static constexpr std::int64_t kMaxEstimatedMinutes = 1440;

  FocusTask() = default;
  /// A task with its title trimmed; fails with ProductivityValidationError.
  FocusTask(std::string_view title, Instant createdAt, Fields fields = {});

  /// Fails with ProductivityValidationError when the title is blank or the estimate is
  /// outside 0 to 1440 minutes.
  void validate() const;

  Uuid id{};
  std::string title{};
  std::string notes{};
  std::optional<LocalDay> plannedDay{};
  std::optional<Instant> scheduledStart{};
  std::optional<std::int64_t> estimatedMinutes{};
  TaskPriority priority = TaskPriority::normal;
  std::int64_t manualPosition = 0;
  TaskStatus status = TaskStatus::pending;
  std::optional<TaskReminder> reminder{};
  std::optional<Uuid> blockingGroupID{};
  Instant createdAt{};
  Instant updatedAt{};
  std::optional<Instant> startedAt{};
  std::optional<Instant> completedAt{};
  std::optional<Instant> lastSkippedAt{};
  std::int64_t skipCount = 0;
  double accumulatedFocusSeconds = 0;
  std::optional<Instant> activeSegmentStartedAt{};

  friend bool operator==(const FocusTask&, const FocusTask&) = default;
};

void toJson(JsonWriter& out, const TaskReminder& reminder);
[[nodiscard]] TaskReminder taskReminderFromJson(const JsonNode& node);
void toJson(JsonWriter& out, const FocusTask& task);
[[nodiscard]] FocusTask focusTaskFromJson(const JsonNode& node);

}  // namespace brindlet

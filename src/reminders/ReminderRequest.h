#pragma once

#include <array>
#include <string>

#include "records/EnumText.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// Which of a task's notification slots a reminder fills.
enum class ReminderKind { preStart, start, overdue };

inline constexpr std::array<ReminderKind, 3> kAllReminderKinds = {
    ReminderKind::preStart, ReminderKind::start, ReminderKind::overdue};

inline constexpr EnumText<ReminderKind, 3> kReminderKindText{{{
    {ReminderKind::preStart, "preStart"},
    {ReminderKind::start, "start"},
    {ReminderKind::overdue, "overdue"},
}}};

/// One notification a task should have: which slot, when, and its words.
struct ReminderRequest {
  /// "brindlet.task.{taskID}.{kind}"; a new plan replaces the old one slot by slot.
  std::string id{};
  Uuid taskID{};
  ReminderKind kind = ReminderKind::start;
  Instant fireDate{};
  std::string title{};
  std::string body{};

  friend bool operator==(const ReminderRequest&, const ReminderRequest&) = default;
};

void toJson(JsonWriter& out, const ReminderRequest& request);
[[nodiscard]] ReminderRequest reminderRequestFromJson(const JsonNode& node);

}  // namespace brindlet

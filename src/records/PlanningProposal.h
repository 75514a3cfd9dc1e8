#pragma once

#include <optional>
#include <string>

#include "records/EnumText.h"
#include "records/LocalDay.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

enum class ProposalKind { reschedule, reduceLoad, splitTask };

inline constexpr EnumText<ProposalKind, 3> kProposalKindText{{{
    {ProposalKind::reschedule, "reschedule"},
    {ProposalKind::reduceLoad, "reduceLoad"},
    {ProposalKind::splitTask, "splitTask"},
}}};

enum class ProposalStatus { pending, approved, dismissed };

inline constexpr EnumText<ProposalStatus, 3> kProposalStatusText{{{
    {ProposalStatus::pending, "pending"},
    {ProposalStatus::approved, "approved"},
    {ProposalStatus::dismissed, "dismissed"},
}}};

/// A change to the plan that waits for the user's approval.
struct PlanningProposal {
  Uuid id = Uuid::random();
  ProposalKind kind = ProposalKind::reschedule;
  Uuid taskID{};
  std::string reason{};
  std::optional<LocalDay> originalPlannedDay{};
  std::optional<LocalDay> suggestedPlannedDay{};
  ProposalStatus status = ProposalStatus::pending;
  Instant createdAt{};

  friend bool operator==(const PlanningProposal&, const PlanningProposal&) = default;
};

void toJson(JsonWriter& out, const PlanningProposal& proposal);
[[nodiscard]] PlanningProposal planningProposalFromJson(const JsonNode& node);

}  // namespace brindlet

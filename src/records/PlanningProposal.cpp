#include "records/PlanningProposal.h"

#include "records/JsonFields.h"

namespace brindlet {
namespace {

void writeDay(JsonWriter& out, const LocalDay& day) { toJson(out, day); }

}  // namespace

void toJson(JsonWriter& out, const PlanningProposal& proposal) {
  out.beginObject();
  json::writeInstant(out.key("createdAt"), proposal.createdAt);
  out.key("id").string(proposal.id.uppercaseText());
  out.key("kind").string(kProposalKindText.text(proposal.kind));
  json::optionalKey(out, "originalPlannedDay", proposal.originalPlannedDay, writeDay);
  out.key("reason").string(proposal.reason);
  out.key("status").string(kProposalStatusText.text(proposal.status));
  json::optionalKey(out, "suggestedPlannedDay", proposal.suggestedPlannedDay, writeDay);
  out.key("taskID").string(proposal.taskID.uppercaseText());
  out.endObject();
}

PlanningProposal planningProposalFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {
      .id = object.required("id").uuid(),
      .kind = kProposalKindText.decode(object.required("kind")),
      .taskID = object.required("taskID").uuid(),
      .reason = std::string(object.required("reason").string()),
      .originalPlannedDay =
          json::optionalValue<LocalDay>(object, "originalPlannedDay", localDayFromJson),
      .suggestedPlannedDay =
          json::optionalValue<LocalDay>(object, "suggestedPlannedDay", localDayFromJson),
      .status = kProposalStatusText.decode(object.required("status")),
      .createdAt = object.required("createdAt").instant(),
  };
}

}  // namespace brindlet

#include "persistence/PersistedState.h"

namespace brindlet {
namespace {

constexpr std::int64_t kBlockingOnlySchemaVersion = 1;

template <typename Record>
void writeList(JsonWriter& out, std::string_view key, const std::vector<Record>& records) {
  out.key(key).beginArray();
  for (const Record& record : records) toJson(out, record);
  out.endArray();
}

// A generous guess at the length of the pretty text. A plan of years is megabytes long, and
// growing the text step by step would cost more than writing it; a guess too high costs nothing,
// since unused room is never touched, and one too low only means some growth after all.
std::size_t estimatedTextSize(const PersistedState& state) {
  constexpr std::size_t kPerTask = 1024;
  constexpr std::size_t kPerAuditEvent = 320;
  constexpr std::size_t kPerRecord = 1024;
  std::size_t size = 4096 + state.auditEvents.size() * kPerAuditEvent +
                     (state.proposals.size() + state.groups.size()) * kPerRecord;
  for (const FocusTask& task : state.tasks) {
    size += kPerTask + 2 * (task.title.size() + task.notes.size());
  }
  for (const PlanningProposal& proposal : state.proposals) size += 2 * proposal.reason.size();
  for (const DomainGroup& group : state.groups) size += group.rules.size() * kPerRecord;
  return size;
}

PersistedState makeInitial() {
  PersistedState state;
  state.groups = {DomainGroup::socialDistractions()};
  return state;
}

}  // namespace

const PersistedState& PersistedState::initial() {
  static const PersistedState state = makeInitial();
  return state;
}

std::string encodeState(const PersistedState& state, JsonWriter::Style style) {
  JsonWriter out(style);
  out.reserve(estimatedTextSize(state));
  out.beginObject();
  if (state.activeSession) {
    out.key("activeSession");
    toJson(out, *state.activeSession);
  }
  writeList(out, "auditEvents", state.auditEvents);
  writeList(out, "groups", state.groups);
  out.key("preferences");
  toJson(out, state.preferences);
  writeList(out, "proposals", state.proposals);
  out.key("revision").integer(state.revision);
  out.key("schemaVersion").integer(state.schemaVersion);
  writeList(out, "tasks", state.tasks);
  out.endObject();
  return out.take();
}

PersistedState persistedStateFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  const std::int64_t versionRead = object.required("schemaVersion").integer();
  PersistedState state;
  // A loaded document is always current, whatever it was written as.
  state.schemaVersion = PersistedState::currentSchemaVersion;
  if (const auto groups = object.optional("groups")) {
    state.groups = groups->list(domainGroupFromJson);
  } else {
    state.groups = {DomainGroup::socialDistractions()};
  }
  if (const auto session = object.optional("activeSession")) {
    state.activeSession = blockSessionFromJson(*session);
  }
  // The blocking-only schema had no plan; whatever plan keys such a file holds are not ours.
  if (versionRead == kBlockingOnlySchemaVersion) return state;
  if (const auto revision = object.optional("revision")) state.revision = revision->integer();
  if (const auto tasks = object.optional("tasks")) state.tasks = tasks->list(focusTaskFromJson);
  if (const auto proposals = object.optional("proposals")) {
    state.proposals = proposals->list(planningProposalFromJson);
  }
  if (const auto events = object.optional("auditEvents")) {
    state.auditEvents = events->list(taskAuditEventFromJson);
  }
  if (const auto preferences = object.optional("preferences")) {
    state.preferences = productivityPreferencesFromJson(*preferences);
  }
  return state;
}

}  // namespace brindlet

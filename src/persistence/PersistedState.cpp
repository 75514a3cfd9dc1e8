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
  // Generous guesses of each record's size; regrowing a 10 MB string costs more than spare room.
  const std::size_t expectedSize = 4096 + state.tasks.size() * 1024 +
                                   state.auditEvents.size() * 320 + state.proposals.size() * 512 +
                                   state.groups.size() * 1024;
  JsonWriter out(style, expectedSize);
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

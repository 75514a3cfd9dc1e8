#include <gtest/gtest.h>

#include <limits>

#include "Builders.h"
#include "TempDir.h"
#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"

namespace brindlet {
namespace {

using testing::makeFullState;
using testing::TempDir;

// Walks the whole document and reports the first object whose keys are out of order.
std::string firstUnsortedObject(simdjson::dom::element element, const std::string& path) {
  if (element.is_object()) {
    std::string_view previous;
    bool first = true;
    for (const auto field : simdjson::dom::object(element)) {
      if (!first && !(previous < field.key)) return path + "." + std::string(field.key);
      first = false;
      previous = field.key;
      const std::string inner =
          firstUnsortedObject(field.value, path + "." + std::string(field.key));
      if (!inner.empty()) return inner;
    }
  } else if (element.is_array()) {
    for (const auto item : simdjson::dom::array(element)) {
      const std::string inner = firstUnsortedObject(item, path + "[]");
      if (!inner.empty()) return inner;
    }
  }
  return {};
}

TEST(PersistedStateTest, InitialDocumentHoldsTheSeededGroupAndNothingElse) {
  const PersistedState& initial = PersistedState::initial();
  EXPECT_EQ(initial.schemaVersion, 2);
  EXPECT_EQ(initial.groups, std::vector{DomainGroup::socialDistractions()});
  EXPECT_FALSE(initial.activeSession.has_value());
  EXPECT_EQ(initial.revision, 0);
  EXPECT_TRUE(initial.tasks.empty() && initial.proposals.empty() && initial.auditEvents.empty());
  EXPECT_EQ(initial.preferences.dailyCapacityMinutes, 480);
}

TEST(PersistedStateTest, DocumentWithEveryOptionalFieldSurvivesSaveThenLoad) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  const PersistedState state = makeFullState();
  store.save(state);
  EXPECT_EQ(store.load(), state);
}

TEST(PersistedStateTest, DocumentWithNoOptionalFieldSurvivesSaveThenLoad) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  PersistedState state = PersistedState::initial();
  state.tasks = {FocusTask("Bare", testing::kTestNow)};
  state.auditEvents = {TaskAuditEvent{.timestamp = testing::kTestNow, .action = "task.create"}};
  state.proposals = {PlanningProposal{.taskID = state.tasks[0].id, .reason = "r"}};
  store.save(state);
  EXPECT_EQ(store.load(), state);
  const std::string text = testing::readBytes(store.url());
  for (const char* key : {"activeSession", "plannedDay", "reminder", "taskID\": null",
                          "originalPlannedDay", "startedAt", "null"}) {
    EXPECT_EQ(text.find(key), std::string::npos) << key;
  }
}

TEST(PersistedStateTest, FileIsPrettyPrintedWithKeysSortedAtEveryLevel) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  store.save(makeFullState());
  const std::string text = testing::readBytes(store.url());
  EXPECT_EQ(text.rfind("{\n  \"activeSession\": {\n    \"endsAt\": ", 0), 0U) << text.substr(0, 80);
  simdjson::dom::parser parser;
  const simdjson::dom::element root = parser.parse(text);
  EXPECT_EQ(firstUnsortedObject(root, ""), "");
}

TEST(PersistedStateTest, DatesAreNumbersOfSecondsSince2001) {
  const PersistedState state = makeFullState();
  const std::string text = encodeState(state, JsonWriter::Style::compact);
  simdjson::dom::parser parser;
  const simdjson::dom::element root = parser.parse(text);
  const simdjson::dom::element task = root["tasks"].at(0);
  EXPECT_TRUE(task["createdAt"].is_number());
  EXPECT_DOUBLE_EQ(double(task["scheduledStart"]),
                   state.tasks[0].scheduledStart->secondsSinceReferenceDate());
  EXPECT_TRUE(root["activeSession"]["endsAt"].is_number());
  EXPECT_TRUE(root["auditEvents"].at(0)["timestamp"].is_number());
}

TEST(PersistedStateTest, HugeFocusTimeSurvivesSaveThenLoad) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  PersistedState state = makeFullState();
  state.tasks[0].accumulatedFocusSeconds = 3555555555555555555550.0;
  store.save(state);
  EXPECT_EQ(store.load(), state);
}

TEST(PersistedStateTest, NumberThatJsonCannotHoldFailsTheEncoding) {
  PersistedState state = makeFullState();
  state.tasks[0].accumulatedFocusSeconds = std::numeric_limits<double>::infinity();
  EXPECT_THROW((void)encodeState(state), EncodingError);
}

}  // namespace
}  // namespace brindlet

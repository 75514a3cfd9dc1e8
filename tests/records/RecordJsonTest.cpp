#include <gtest/gtest.h>

#include "Builders.h"
#include "records/BlockSession.h"
#include "records/FocusTask.h"
#include "records/PlanningProposal.h"
#include "records/ProductivityPreferences.h"
#include "records/TaskAuditEvent.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeTask;

template <typename Record, typename Decode>
Record roundTrip(const Record& record, Decode decode) {
  JsonWriter out;
  toJson(out, record);
  const JsonDocument document(out.text());
  return decode(document.root());
}

std::string compactJson(const FocusTask& task) {
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, task);
  return out.take();
}

TEST(RecordJsonTest, TaskWithEveryFieldRoundTrips) {
  const FocusTask task = makeTask().withEveryField();
  EXPECT_EQ(roundTrip(task, focusTaskFromJson), task);
}

TEST(RecordJsonTest, TaskWithNoOptionalFieldRoundTrips) {
  const FocusTask task("Bare", kTestNow);
  EXPECT_EQ(roundTrip(task, focusTaskFromJson), task);
}

TEST(RecordJsonTest, TaskWithNoReminderWritesNoReminderKey) {
  EXPECT_EQ(compactJson(makeTask()).find("reminder"), std::string::npos);
}

TEST(RecordJsonTest, TaskWithADisabledReminderWritesTheObjectWithIsEnabledFalse) {
  FocusTask task = makeTask();
  task.reminder = TaskReminder{.isEnabled = false};
  EXPECT_NE(
      compactJson(task).find(
          R"("reminder":{"isEnabled":false,"remindTenMinutesBefore":false,"remindWhenOverdue":true})"),
      std::string::npos);
}

TEST(RecordJsonTest, TaskIdsAreWrittenInUpperCaseAndReadInEitherCase) {
  FocusTask task = makeTask();
  task.blockingGroupID = Uuid::random();
  std::string json = compactJson(task);
  EXPECT_NE(json.find(task.id.uppercaseText()), std::string::npos);
  const std::string upper = task.id.uppercaseText();
  json.replace(json.find(upper), upper.size(), task.id.lowercaseText());
  const JsonDocument document(json);
  EXPECT_EQ(focusTaskFromJson(document.root()), task);
}

TEST(RecordJsonTest, NullOptionalIsReadAsAbsent) {
  std::string json = compactJson(makeTask());
  json.insert(1, R"("plannedDay":null,"estimatedMinutes":null,)");
  const JsonDocument document(json);
  const FocusTask task = focusTaskFromJson(document.root());
  EXPECT_FALSE(task.plannedDay.has_value());
  EXPECT_FALSE(task.estimatedMinutes.has_value());
}

TEST(RecordJsonTest, PriorityTextOutsideTheTableFailsTheTask) {
  std::string json = compactJson(makeTask());
  json.replace(json.find("\"normal\""), 8, "\"urgent\"");
  const JsonDocument document(json);
  try {
    (void)focusTaskFromJson(document.root());
    FAIL() << "decoded";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.description(),
              "The value “priority” is not valid: “urgent” is not one of critical, high, normal, "
              "low.");
  }
}

TEST(RecordJsonTest, MissingRequiredTaskKeyFailsTheTask) {
  for (const char* key : {"\"notes\"", "\"skipCount\"", "\"createdAt\"", "\"status\""}) {
    std::string json = compactJson(makeTask());
    json.replace(json.find(key), 1, "\"x");
    const JsonDocument document(json);
    EXPECT_THROW((void)focusTaskFromJson(document.root()), DecodingError) << key;
  }
}

TEST(RecordJsonTest, DatesAreNumbersOfSecondsSince2001) {
  const std::string json = compactJson(makeTask());
  EXPECT_NE(
      json.find("\"createdAt\":" + std::to_string(long(kTestNow.secondsSinceReferenceDate()))),
      std::string::npos);
}

TEST(RecordJsonTest, AuditEventRoundTripsWithAndWithoutTask) {
  const TaskAuditEvent withTask{.id = Uuid::random(),
                                .timestamp = kTestNow,
                                .source = MutationSource::agent,
                                .action = "task.start",
                                .taskID = Uuid::random()};
  EXPECT_EQ(roundTrip(withTask, taskAuditEventFromJson), withTask);
  TaskAuditEvent withoutTask = withTask;
  withoutTask.taskID.reset();
  withoutTask.source = MutationSource::app;
  EXPECT_EQ(roundTrip(withoutTask, taskAuditEventFromJson), withoutTask);
}

TEST(RecordJsonTest, ProposalRoundTripsWithAndWithoutDays) {
  PlanningProposal proposal{.id = Uuid::random(),
                            .kind = ProposalKind::splitTask,
                            .taskID = Uuid::random(),
                            .reason = "Too long for one sitting.",
                            .originalPlannedDay = LocalDay{2026, 11, 20},
                            .suggestedPlannedDay = LocalDay{2026, 11, 23},
                            .status = ProposalStatus::dismissed,
                            .createdAt = kTestNow};
  EXPECT_EQ(roundTrip(proposal, planningProposalFromJson), proposal);
  proposal.originalPlannedDay.reset();
  proposal.suggestedPlannedDay.reset();
  proposal.kind = ProposalKind::reduceLoad;
  EXPECT_EQ(roundTrip(proposal, planningProposalFromJson), proposal);
}

TEST(RecordJsonTest, PreferencesRoundTripAndDefaultTo480Minutes) {
  EXPECT_EQ(ProductivityPreferences().dailyCapacityMinutes, 480);
  const ProductivityPreferences preferences{300};
  EXPECT_EQ(roundTrip(preferences, productivityPreferencesFromJson), preferences);
}

TEST(RecordJsonTest, EnumTextsAreTheirRawNames) {
  EXPECT_EQ(kTaskStatusText.text(TaskStatus::archived), "archived");
  EXPECT_EQ(kProposalKindText.text(ProposalKind::reduceLoad), "reduceLoad");
  EXPECT_EQ(kProposalStatusText.text(ProposalStatus::approved), "approved");
  EXPECT_EQ(kMutationSourceText.text(MutationSource::agent), "agent");
  EXPECT_EQ(kSessionModeText.text(SessionMode::flexible), "flexible");
  EXPECT_FALSE(kTaskStatusText.parse("Pending").has_value());
}

}  // namespace
}  // namespace brindlet

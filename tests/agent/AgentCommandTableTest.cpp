#include <gtest/gtest.h>

#include <memory>

#include "AgentServiceFixture.h"
#include "Builders.h"
#include "RecordingReminderScheduler.h"
#include "SessionFixture.h"
#include "agent/AgentResults.h"
#include "flow/FocusCoordinator.h"
#include "flow/PlannerEngine.h"
#include "reminders/ReminderPlanner.h"

namespace brindlet {
namespace {

using testing::accepted;
using testing::AgentServiceTest;
using testing::command;
using testing::kTestNow;
using testing::makeTask;
using testing::refusal;

std::string taskPayload(const FocusTask& task, std::string_view more = "") {
  return R"({"task_id":")" + task.id.uppercaseText() + "\"" + std::string(more) + "}";
}

const JSONValue& field(const AgentResponseEnvelope& response, std::string_view key) {
  static const JSONValue kMissing = JSONValue::ofString("<missing>");
  if (!response.result || response.result->object() == nullptr) return kMissing;
  const JSONValue* value = response.result->object()->find(key);
  return value != nullptr ? *value : kMissing;
}

// ---- tasks.list and tasks.create ----

TEST_F(AgentServiceTest, ListGivesEveryTaskInStoredOrderWithTheSnapshotRevision) {
  PersistedState state = PersistedState::initial();
  state.revision = 5;
  state.tasks = {makeTask().titled("B").withStatus(TaskStatus::archived),
                 makeTask().titled("A").withEveryField()};
  seed(state);
  EXPECT_EQ(
      execute(command("tasks.list")),
      accepted(5, JSONValue::ofArray({jsonValue(state.tasks[0]), jsonValue(state.tasks[1])})));
}

TEST_F(AgentServiceTest, CreateAppendsTheTaskAndAnswersItAsBuilt) {
  const AgentResponseEnvelope response = execute(command(
      "tasks.create", 0,
      R"({"title":"  Draft the report \n","estimated_minutes":45,"priority":"high","planned_day":"2026-11-23","notes":"ignored"})"));
  ASSERT_TRUE(response.ok);
  EXPECT_EQ(response.revision, 1);
  ASSERT_EQ(stored().tasks.size(), 1U);
  const FocusTask task = stored().tasks[0];
  EXPECT_EQ(response.result, jsonValue(task));
  EXPECT_EQ(task.title, "Draft the report");
  EXPECT_EQ(task.notes, "");
  EXPECT_EQ(task.estimatedMinutes, 45);
  EXPECT_EQ(task.priority, TaskPriority::high);
  EXPECT_EQ(task.plannedDay, (LocalDay{2026, 11, 23}));
  EXPECT_EQ(task.status, TaskStatus::pending);
  EXPECT_EQ(task.createdAt, kTestNow);
  EXPECT_EQ(task.updatedAt, kTestNow);
  EXPECT_EQ(task.reminder, std::nullopt);
  EXPECT_EQ(task.blockingGroupID, std::nullopt);
  const TaskAuditEvent event = stored().auditEvents.back();
  EXPECT_EQ(event.source, MutationSource::agent);
  EXPECT_EQ(event.action, "task.create");
  EXPECT_EQ(event.taskID, task.id);
}

TEST_F(AgentServiceTest, CreatePutsTheTaskBehindTheOpenTasksOfItsDay) {
  PersistedState state = PersistedState::initial();
  FocusTask first = makeTask().plannedOn({2026, 11, 23});
  first.manualPosition = 4;
  state.tasks = {first};
  seed(state);
  ASSERT_TRUE(execute(command("tasks.create", 0,
                              R"({"title":"Next","planned_day":"2026-11-23","priority":"low"})"))
                  .ok);
  EXPECT_EQ(
      stored().tasks.at(1).manualPosition,
      PlannerEngine::nextManualPosition(state.tasks, LocalDay{2026, 11, 23}, TaskPriority::low));
  EXPECT_GT(stored().tasks.at(1).manualPosition, 4);
}

TEST_F(AgentServiceTest, CreateWithUnknownPriorityMakesANormalTask) {
  ASSERT_TRUE(execute(command("tasks.create", 0, R"({"title":"Report","priority":"urgent"})")).ok);
  ASSERT_TRUE(execute(command("tasks.create", 1, R"({"title":"Report","priority":1})")).ok);
  EXPECT_EQ(stored().tasks.at(0).priority, TaskPriority::normal);
  EXPECT_EQ(stored().tasks.at(1).priority, TaskPriority::normal);
}

TEST_F(AgentServiceTest, CreateWithUnreadableDayMakesAnUnplannedTask) {
  const AgentResponseEnvelope response =
      execute(command("tasks.create", 0, R"({"title":"Report","planned_day":"soon"})"));
  ASSERT_TRUE(response.ok);
  EXPECT_EQ(stored().tasks.at(0).plannedDay, std::nullopt);
  EXPECT_FALSE(response.result->object()->contains("plannedDay"));
}

TEST_F(AgentServiceTest, DaysAreReadForgivinglyFromTheNumbersBetweenDashes) {
  const std::vector<std::pair<std::string, std::optional<LocalDay>>> cases = {
      {"2026-02-30", LocalDay{2026, 2, 30}},
      {"2026-13-40", LocalDay{2026, 13, 40}},
      {"2026-xx-01-05", LocalDay{2026, 1, 5}},
      {"2026-1", std::nullopt},
      {"--2026--1--5--", LocalDay{2026, 1, 5}},
      {"2026-01-05-07", std::nullopt},
      {"", std::nullopt},
      {"2026-+1-05", LocalDay{2026, 1, 5}},
      {"2026-1 -05", std::nullopt}};
  std::int64_t revision = 0;
  for (const auto& [text, day] : cases) {
    ASSERT_TRUE(execute(command("tasks.create", revision++,
                                R"({"title":"Report","planned_day":")" + text + "\"}"))
                    .ok);
    EXPECT_EQ(stored().tasks.back().plannedDay, day) << text;
  }
}

TEST_F(AgentServiceTest, CreateWithBlankTitleIsAValidationError) {
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"title":"   "})")),
            refusal("validation_error", "The task details are invalid."));
  EXPECT_TRUE(stored().tasks.empty());
}

TEST_F(AgentServiceTest, CreateWithoutTitleIsMissingTitle) {
  EXPECT_EQ(execute(command("tasks.create", 0, R"({"estimated_minutes":5})")),
            refusal("invalid_payload", "Missing title."));
}

// ---- tasks.update ----

class AgentUpdateTest : public AgentServiceTest {
 protected:
  AgentUpdateTest() {
    PersistedState state = PersistedState::initial();
    state.tasks = {task_};
    seed(state);
  }
  FocusTask task_ = makeTask()
                        .titled("Report")
                        .plannedOn({2026, 11, 21})
                        .estimated(20)
                        .withPriority(TaskPriority::low);
};

TEST_F(AgentUpdateTest, EmptyDayTextUnplansAndNullDayKeepsTheDay) {
  ASSERT_TRUE(execute(command("tasks.update", 0, taskPayload(task_, R"(,"planned_day":null)"))).ok);
  EXPECT_EQ(storedTask(task_.id).plannedDay, (LocalDay{2026, 11, 21}));
  ASSERT_TRUE(execute(command("tasks.update", 1, taskPayload(task_, R"(,"planned_day":"")"))).ok);
  EXPECT_EQ(storedTask(task_.id).plannedDay, std::nullopt);
}

TEST_F(AgentUpdateTest, EmptyPayloadSucceedsAdvancesTheRevisionAndMovesUpdatedAt) {
  const Instant later = kTestNow.advanced(600);
  EXPECT_EQ(execute(command("tasks.update", 0, taskPayload(task_)), later), accepted(1));
  FocusTask expected = task_;
  expected.updatedAt = later;
  EXPECT_EQ(storedTask(task_.id), expected);
  const TaskAuditEvent event = stored().auditEvents.back();
  EXPECT_EQ(event.source, MutationSource::agent);
  EXPECT_EQ(event.action, "task.update");
  EXPECT_EQ(event.taskID, task_.id);
}

TEST_F(AgentUpdateTest, SetsTitleEstimatePriorityAndDayButNotThePosition) {
  ASSERT_TRUE(
      execute(command("tasks.update", 0,
                      taskPayload(task_, R"(,"title":" New title ","estimated_minutes":90,)"
                                         R"("priority":"critical","planned_day":"2026-11-25")")))
          .ok);
  const FocusTask task = storedTask(task_.id);
  EXPECT_EQ(task.title, "New title");
  EXPECT_EQ(task.estimatedMinutes, 90);
  EXPECT_EQ(task.priority, TaskPriority::critical);
  EXPECT_EQ(task.plannedDay, (LocalDay{2026, 11, 25}));
  EXPECT_EQ(task.manualPosition, task_.manualPosition);
}

TEST_F(AgentUpdateTest, ValuesOfTheWrongKindLeaveTheFieldsAlone) {
  ASSERT_TRUE(
      execute(command("tasks.update", 0,
                      taskPayload(task_, R"(,"title":5,"priority":"urgent","planned_day":7)")))
          .ok);
  const FocusTask task = storedTask(task_.id);
  EXPECT_EQ(task.title, "Report");
  EXPECT_EQ(task.priority, TaskPriority::low);
  EXPECT_EQ(task.plannedDay, (LocalDay{2026, 11, 21}));
}

TEST_F(AgentUpdateTest, NullEstimateIsRefusedSoAnEstimateIsNeverCleared) {
  EXPECT_EQ(execute(command("tasks.update", 0, taskPayload(task_, R"(,"estimated_minutes":null)"))),
            refusal("invalid_payload", "Invalid estimated_minutes."));
  EXPECT_EQ(storedTask(task_.id).estimatedMinutes, 20);
  EXPECT_EQ(revision(), 0);
}

TEST_F(AgentUpdateTest, TitleBlankAfterTrimmingIsAValidationErrorAndNothingIsSaved) {
  EXPECT_EQ(execute(command("tasks.update", 0, taskPayload(task_, R"(,"title":" \n ")"))),
            refusal("validation_error", "The task details are invalid."));
  EXPECT_EQ(storedTask(task_.id), task_);
  EXPECT_EQ(revision(), 0);
}

TEST_F(AgentUpdateTest, UnknownTaskIsNotFoundAtTheRightRevisionAndAConflictAtAStaleOne) {
  const FocusTask stranger = makeTask();
  EXPECT_EQ(execute(command("tasks.update", 0, taskPayload(stranger))),
            refusal("invalid_payload", "Task not found."));
  EXPECT_EQ(execute(command("tasks.update", 3, taskPayload(stranger))).error->code,
            "revision_conflict");
  // "tasks.start" looks in the snapshot before any revision is compared.
  EXPECT_EQ(execute(command("tasks.start", 3, taskPayload(stranger))),
            refusal("invalid_payload", "Task not found."));
}

// ---- The life cycle without blocking ----

TEST_F(AgentUpdateTest, StartPauseResumeSkipAndCompleteGoThroughTheTaskEngineAsTheApp) {
  const Instant t0 = kTestNow;
  EXPECT_EQ(execute(command("tasks.start", 0, taskPayload(task_)), t0), accepted(1));
  EXPECT_EQ(storedTask(task_.id).status, TaskStatus::active);
  EXPECT_EQ(execute(command("tasks.pause", 1), t0.advanced(300)), accepted(2));
  EXPECT_EQ(storedTask(task_.id).status, TaskStatus::paused);
  EXPECT_EQ(storedTask(task_.id).accumulatedFocusSeconds, 300);
  EXPECT_EQ(execute(command("tasks.resume", 2), t0.advanced(400)), accepted(3));
  EXPECT_EQ(execute(command("tasks.skip", 3), t0.advanced(500)), accepted(4));
  EXPECT_EQ(storedTask(task_.id).skipCount, 1);
  EXPECT_EQ(execute(command("tasks.start", 4, taskPayload(task_)), t0.advanced(600)), accepted(5));
  EXPECT_EQ(execute(command("tasks.complete", 5), t0.advanced(900)), accepted(6));
  EXPECT_EQ(storedTask(task_.id).status, TaskStatus::completed);
  EXPECT_EQ(auditActions(), (std::vector<std::string>{"task.start", "task.pause", "task.start",
                                                      "task.skip", "task.start", "task.complete"}));
  for (const TaskAuditEvent& event : stored().auditEvents) {
    EXPECT_EQ(event.source, MutationSource::app);
  }
}

TEST_F(AgentServiceTest, ResumeActsOnTheFirstPausedTaskInStoredOrder) {
  PersistedState state = PersistedState::initial();
  const FocusTask first = makeTask().titled("First").withStatus(TaskStatus::paused);
  const FocusTask second = makeTask().titled("Second").withStatus(TaskStatus::paused);
  state.tasks = {makeTask().titled("Pending"), first, second};
  seed(state);
  EXPECT_EQ(execute(command("tasks.resume", 0)), accepted(1));
  EXPECT_EQ(storedTask(first.id).status, TaskStatus::active);
  EXPECT_EQ(storedTask(second.id).status, TaskStatus::paused);
}

TEST_F(AgentServiceTest, AnotherActiveTaskMakesStartFail) {
  PersistedState state = PersistedState::initial();
  const FocusTask running = makeTask().withStatus(TaskStatus::active);
  const FocusTask waiting = makeTask();
  state.tasks = {running, waiting};
  seed(state);
  EXPECT_EQ(execute(command("tasks.start", 0, taskPayload(waiting))),
            refusal("operation_failed", "The command could not be completed."));
  EXPECT_EQ(revision(), 0);
}

// ---- Reminders ----

TEST_F(AgentServiceTest, CompleteWithAnEnabledReminderNeedsTheAppAndLeavesTheTaskActive) {
  PersistedState state = PersistedState::initial();
  state.revision = 2;
  FocusTask task = makeTask().withStatus(TaskStatus::active);
  task.reminder = TaskReminder{.isEnabled = true};
  state.tasks = {task};
  seed(state);
  EXPECT_EQ(execute(command("tasks.complete", 2)),
            refusal("reminder_requires_app",
                    "Complete this task in Tolvane so its pending reminder is cancelled.", 2));
  EXPECT_EQ(storedTask(task.id).status, TaskStatus::active);
  EXPECT_EQ(revision(), 2);
}

TEST_F(AgentServiceTest, CompleteWithADisabledReminderSucceedsWithoutReminders) {
  PersistedState state = PersistedState::initial();
  FocusTask task = makeTask().withStatus(TaskStatus::active);
  task.reminder = TaskReminder{.isEnabled = false};
  state.tasks = {task};
  seed(state);
  EXPECT_EQ(execute(command("tasks.complete", 0)), accepted(1));
  EXPECT_EQ(storedTask(task.id).status, TaskStatus::completed);
}

TEST_F(AgentServiceTest, CompleteWithRemindersCancelsTheTasksNotifications) {
  PersistedState state = PersistedState::initial();
  FocusTask task = makeTask().withStatus(TaskStatus::active);
  task.reminder = TaskReminder{.isEnabled = true};
  state.tasks = {task};
  seed(state);
  const auto scheduler = std::make_shared<testing::RecordingReminderScheduler>();
  scheduler->pending[ReminderPlanner::identifier(task.id, ReminderKind::start)] = {};
  ReminderCoordinator reminders(scheduler);
  AgentCommandService service(store_, sessions_, recommendations_, Calendar::gregorianUtc(),
                              {.reminders = &reminders});
  EXPECT_EQ(service.execute(command("tasks.complete", 0), kTestNow), accepted(1));
  EXPECT_EQ(scheduler->calls, (std::vector<std::string>{"cancel"}));
  EXPECT_TRUE(scheduler->pending.empty());
}

// ---- Review and proposals ----

TEST_F(AgentServiceTest, ReviewTakesTheWeekAroundNowNeverOneFromThePayload) {
  PersistedState state = PersistedState::initial();
  state.revision = 6;
  FocusTask done =
      makeTask().plannedOn({2026, 11, 17}).estimated(30).withStatus(TaskStatus::completed);
  done.completedAt = kTestNow.advanced(-3600);
  done.accumulatedFocusSeconds = 1800;
  state.tasks = {done, makeTask().plannedOn({2026, 11, 18}).estimated(40)};
  seed(state);
  const AgentResponseEnvelope response =
      execute(command("review.get", std::nullopt, R"({"week":"2020-01-06","now":"2020-01-06"})"));
  const WeeklyReview expected =
      RecommendationEngine::review(kTestNow, state.tasks, Calendar::gregorianUtc());
  EXPECT_EQ(response, accepted(6, jsonValue(expected)));
  EXPECT_EQ(field(response, "weekStart"), jsonValue(LocalDay{2026, 11, 15}));
  EXPECT_EQ(field(response, "completedTaskCount"), JSONValue::ofNumber(1));
}

TEST_F(AgentServiceTest, GenerateSavesTheProposalsAsTheAgentAndAnswersThem) {
  PersistedState state = PersistedState::initial();
  state.preferences.dailyCapacityMinutes = 60;
  state.tasks = {makeTask().titled("A").plannedOn({2026, 11, 21}).estimated(50),
                 makeTask().titled("B").plannedOn({2026, 11, 21}).estimated(50)};
  seed(state);
  const AgentResponseEnvelope response = execute(command("proposals.generate", 0));
  ASSERT_TRUE(response.ok);
  EXPECT_EQ(response.revision, 1);
  const std::vector<PlanningProposal> saved = stored().proposals;
  ASSERT_FALSE(saved.empty());
  JSONValue::Array expected;
  for (const PlanningProposal& proposal : saved) expected.push_back(jsonValue(proposal));
  EXPECT_EQ(response.result, JSONValue::ofArray(expected));
  EXPECT_EQ(stored().auditEvents.back().source, MutationSource::agent);
  EXPECT_EQ(stored().auditEvents.back().action, "proposals.generate");
}

TEST_F(AgentServiceTest, ProposalsListReturnsDismissedAndApprovedToo) {
  PersistedState state = PersistedState::initial();
  state.revision = 3;
  const Uuid taskID = Uuid::random();
  state.proposals = {
      PlanningProposal{.taskID = taskID, .status = ProposalStatus::approved, .createdAt = kTestNow},
      PlanningProposal{.kind = ProposalKind::splitTask,
                       .taskID = taskID,
                       .status = ProposalStatus::dismissed,
                       .createdAt = kTestNow},
      PlanningProposal{.kind = ProposalKind::reduceLoad,
                       .taskID = taskID,
                       .originalPlannedDay = LocalDay{2026, 11, 21},
                       .suggestedPlannedDay = LocalDay{2026, 11, 22},
                       .createdAt = kTestNow}};
  seed(state);
  EXPECT_EQ(
      execute(command("proposals.list")),
      accepted(3, JSONValue::ofArray({jsonValue(state.proposals[0]), jsonValue(state.proposals[1]),
                                      jsonValue(state.proposals[2])})));
}

// ---- Result forms ----

TEST(AgentResultsTest, TaskKeysComeInTheirOrderWithDatesAsText) {
  FocusTask task = makeTask().titled("Write the report").withEveryField();
  JsonWriter out(JsonWriter::Style::compact);
  toJson(out, jsonValue(task));
  const std::string id = task.id.uppercaseText();
  const std::string group = task.blockingGroupID->uppercaseText();
  EXPECT_EQ(
      out.text(),
      R"({"id":")" + id +
          R"(","title":"Write the report","notes":"Line one\nwith \"quotes\", a \\ and a tab\t.",)"
          R"("plannedDay":{"year":2026,"month":11,"day":21},"scheduledStart":"2026-11-21T10:30:00Z",)"
          R"("estimatedMinutes":45,"priority":"high","manualPosition":3,"status":"active",)"
          R"("reminder":{"isEnabled":true,"remindTenMinutesBefore":true,"remindWhenOverdue":false},)"
          R"("blockingGroupID":")" +
          group +
          R"(","createdAt":"2026-11-21T09:30:00Z","updatedAt":"2026-11-21T09:31:00Z",)"
          R"("startedAt":"2026-11-21T09:32:00Z","completedAt":"2026-11-21T11:30:00Z",)"
          R"("lastSkippedAt":"2026-11-21T09:31:30Z","skipCount":2,"accumulatedFocusSeconds":1234.5678,)"
          R"("activeSegmentStartedAt":"2026-11-21T09:40:00Z"})");
}

TEST(AgentResultsTest, AbsentOptionalsHaveNoKey) {
  const FocusTask task = makeTask().titled("Bare");
  const JSONValue value = jsonValue(task);
  const JSONObject& object = *value.object();
  EXPECT_EQ(object.size(), 10U);
  for (const char* key :
       {"plannedDay", "scheduledStart", "estimatedMinutes", "reminder", "blockingGroupID",
        "startedAt", "completedAt", "lastSkippedAt", "activeSegmentStartedAt"}) {
    EXPECT_FALSE(object.contains(key)) << key;
  }
}

TEST(AgentResultsTest, ReviewMapsAlternateKeyAndValue) {
  WeeklyReview review{.weekStart = {2026, 11, 15}, .weekEnd = {2026, 11, 21}};
  review.completedByPriority = {{TaskPriority::critical, 2}, {TaskPriority::normal, 3}};
  review.dailyWorkload = {{LocalDay{2026, 11, 16}, 90}};
  const JSONValue value = jsonValue(review);
  const JSONObject& object = *value.object();
  EXPECT_EQ(*object.find("completedByPriority"),
            JSONValue::ofArray({JSONValue::ofString("critical"), JSONValue::ofNumber(2),
                                JSONValue::ofString("normal"), JSONValue::ofNumber(3)}));
  EXPECT_EQ(*object.find("dailyWorkload"),
            JSONValue::ofArray({jsonValue(LocalDay{2026, 11, 16}), JSONValue::ofNumber(90)}));
  std::vector<std::string> keys;
  for (const auto& [key, value] : object) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<std::string>{
                      "weekStart", "weekEnd", "plannedTaskCount", "completedTaskCount",
                      "completionRate", "plannedMinutes", "actualMinutes", "completedByPriority",
                      "carryoverTaskIDs", "skippedTaskIDs", "dailyWorkload", "completedTaskIDs"}));
}

// ---- Blocked tasks ----

// A plan whose tasks name a blocking group, over a session engine with a temporary hosts file
// and a runner that copies files without privileges.
class AgentBlockedTaskTest : public ::testing::Test {
 protected:
  AgentBlockedTaskTest() {
    PersistedState state = PersistedState::initial();
    state.groups = {group_};
    state.tasks = {unestimated_, zeroEstimate_, missingGroup_};
    f_.local.save(state);
    f_.engine.loadPersistedState();
  }

  static FocusTask blockedTask(const DomainGroup& group, std::optional<std::int64_t> estimate) {
    FocusTask task = makeTask().titled("Blocked");
    task.blockingGroupID = group.id;
    task.estimatedMinutes = estimate;
    return task;
  }

  [[nodiscard]] double sessionLength() const {
    const std::optional<BlockSession> session = f_.storedSession();
    if (!session) return -1;
    return session->endsAt.since(session->startedAt);
  }

  testing::SessionFixture f_;
  DomainGroup group_ = testing::makeNewsGroup();
  FocusTask unestimated_ = blockedTask(group_, std::nullopt);
  FocusTask zeroEstimate_ = blockedTask(group_, 0);
  FocusTask missingGroup_ = blockedTask(testing::makeNewsGroup(), 10);
  TaskStore store_{f_.local};
  TaskSessionEngine tasks_{store_, Calendar::gregorianUtc()};
  RecommendationEngine recommendations_{store_};
  FocusCoordinator coordinator_{tasks_, f_.engine};
  AgentCommandService withBlocking_{store_,
                                    tasks_,
                                    recommendations_,
                                    Calendar::gregorianUtc(),
                                    {.focusCoordinator = &coordinator_, .blocking = &f_.engine}};
  AgentCommandService withoutBlocking_{store_, tasks_, recommendations_, Calendar::gregorianUtc()};
};

TEST_F(AgentBlockedTaskTest, StartWithoutBlockingNeedsTheAppWithTheCurrentRevision) {
  const std::string before = testing::readBytes(f_.local.url());
  EXPECT_EQ(
      withoutBlocking_.execute(command("tasks.start", 0, taskPayload(unestimated_)), kTestNow),
      refusal("blocking_requires_app",
              "Start this blocked task through Tolvane so protection is applied.", 0));
  EXPECT_EQ(testing::readBytes(f_.local.url()), before);
  EXPECT_TRUE(f_.hostsFileIsPlain());
}

TEST_F(AgentBlockedTaskTest, StartOfATaskWhoseGroupIsGoneNeedsTheApp) {
  EXPECT_EQ(withBlocking_.execute(command("tasks.start", 0, taskPayload(missingGroup_)), kTestNow),
            refusal("blocking_requires_app",
                    "Start this blocked task through Tolvane so protection is applied.", 0));
  EXPECT_EQ(f_.storedSession(), std::nullopt);
}

TEST_F(AgentBlockedTaskTest, BlockedTaskWithoutEstimateGetsATwentyFiveMinuteSession) {
  EXPECT_EQ(
      withBlocking_.execute(
          command("tasks.start", 0, taskPayload(unestimated_, R"(,"mode":"strict")")), kTestNow),
      accepted(1));
  EXPECT_EQ(sessionLength(), 1500);
  EXPECT_EQ(f_.storedSession()->mode, SessionMode::strict);
  EXPECT_TRUE(f_.blocks(group_));
}

TEST_F(AgentBlockedTaskTest, BlockedTaskWithAnEstimateOfZeroGetsAOneMinuteSession) {
  EXPECT_EQ(
      withBlocking_.execute(
          command("tasks.start", 0, taskPayload(zeroEstimate_, R"(,"mode":"rigid")")), kTestNow),
      accepted(1));
  EXPECT_EQ(sessionLength(), 60);
  EXPECT_EQ(f_.storedSession()->mode, SessionMode::flexible);
}

TEST_F(AgentBlockedTaskTest, ResumeOfABlockedTaskWithoutBlockingNeedsTheApp) {
  PersistedState state = f_.local.load();
  state.tasks[1].status = TaskStatus::paused;
  f_.local.save(state);
  EXPECT_EQ(withoutBlocking_.execute(command("tasks.resume", 0), kTestNow),
            refusal("blocking_requires_app",
                    "Resume this blocked task through Tolvane so protection is applied.", 0));
}

TEST_F(AgentBlockedTaskTest, ResumeOfABlockedTaskStartsAFreshSessionForTheWholeEstimate) {
  PersistedState state = f_.local.load();
  state.tasks[1].status = TaskStatus::paused;
  state.tasks[1].estimatedMinutes = 20;
  state.tasks[1].accumulatedFocusSeconds = 600;
  f_.local.save(state);
  EXPECT_EQ(withBlocking_.execute(command("tasks.resume", 0), kTestNow), accepted(1));
  EXPECT_EQ(sessionLength(), 1200);
  EXPECT_EQ(f_.local.load().tasks[1].status, TaskStatus::active);
}

TEST_F(AgentBlockedTaskTest, RefusedApprovalUndoesTheStartAndFailsTheCommand) {
  f_.refuseNextApproval();
  EXPECT_EQ(withBlocking_.execute(command("tasks.start", 0, taskPayload(unestimated_)), kTestNow),
            refusal("operation_failed", "The command could not be completed."));
  EXPECT_EQ(f_.local.load().tasks[0].status, TaskStatus::pending);
  EXPECT_EQ(f_.storedSession(), std::nullopt);
}

}  // namespace
}  // namespace brindlet

// The commands of the model, each against the state file, the hosts file and the notification
// service that it really changes.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "AppModelFixture.h"
#include "reminders/ReminderPlanner.h"

namespace brindlet::testing {
namespace {

const std::string kStrictLocked = "Strict sessions cannot be ended before their timer expires.";
const std::string kDuplicate = "That domain is already in this group.";
const std::string kTaskChanged =
    "The task changed after this recommendation was created. Generate a new review.";
const Uuid kFacebookRule = Uuid::fromLiteral("A0000000-0000-4000-8000-000000000001");

FocusTask scheduledTask(Instant start) {
  FocusTask task = makeTask().titled("Call the bank").plannedOn(kToday).estimated(20);
  task.scheduledStart = start;
  task.reminder = TaskReminder{.isEnabled = true, .remindTenMinutesBefore = true};
  return task;
}

std::size_t pendingRequestsOf(const RecordingReminderScheduler& scheduler, const Uuid& taskID) {
  std::size_t count = 0;
  for (const ReminderKind kind : kAllReminderKinds) {
    count += scheduler.pending.count(ReminderPlanner::identifier(taskID, kind));
  }
  return count;
}

std::vector<std::string> domainsOf(const DomainGroup& group) {
  std::vector<std::string> domains;
  for (const DomainRule& rule : group.rules) domains.push_back(rule.domain);
  return domains;
}

// ---- planning ----

TEST_F(AppModelTest, AddTaskWithATitleOfSpacesWritesNothing) {
  store(PersistedState::initial());
  const std::string before = readBytes(folders.stateFile());
  const auto model = makeRecoveredModel();

  model->setQuickTitle("   ");
  model->addTask();
  EXPECT_EQ(model->state().editorError, "Enter a task title.");
  EXPECT_EQ(model->state().quickTitle, "   ");
  EXPECT_EQ(model->state().taskSnapshot.revision(), 0);
  EXPECT_EQ(readBytes(folders.stateFile()), before);
}

TEST_F(AppModelTest, AddTaskAppendsToTheSelectedDayAndClearsTheInput) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  model->setQuickTitle("  Plan the week ");
  model->addTask();

  ASSERT_EQ(stored().tasks.size(), 1U);
  const FocusTask task = stored().tasks[0];
  EXPECT_EQ(task.title, "Plan the week");
  EXPECT_EQ(task.plannedDay, kToday);
  EXPECT_EQ(task.createdAt, kTestNow);
  EXPECT_EQ(model->state().quickTitle, "");
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(auditActions(), std::vector<std::string>{"task.create"});
  EXPECT_EQ(stored().auditEvents[0].taskID, task.id);
}

TEST_F(AppModelTest, SaveTaskOfATaskDeletedMeanwhileKeepsTheSelection) {
  const FocusTask task = makeTask().titled("Gone soon").plannedOn(kToday);
  storeTasks({task});
  const auto model = makeRecoveredModel();
  model->setSelectedTask(task);

  PersistedState without = stored();
  without.tasks.clear();
  without.revision += 1;
  store(without);
  model->heartbeat();

  FocusTask edited = task;
  edited.title = "Edited";
  model->saveTask(edited);
  EXPECT_EQ(model->state().editorError, "The task no longer exists.");
  EXPECT_EQ(model->state().selectedTask, task);
  EXPECT_TRUE(stored().tasks.empty());
}

TEST_F(AppModelTest, SaveTaskKeepsTheStoredStatusAndPosition) {
  FocusTask task = makeTask().titled("Report").plannedOn(kToday);
  task.manualPosition = 3;
  storeTasks({task});
  const auto model = makeRecoveredModel();
  model->setSelectedTask(task);
  clock->advance(5);
  model->heartbeat();

  FocusTask edited = task;
  edited.title = "Quarterly report";
  edited.status = TaskStatus::completed;
  edited.manualPosition = 9;
  edited.accumulatedFocusSeconds = 120;
  edited.estimatedMinutes = 45;
  model->saveTask(edited);

  const FocusTask saved = *storedTask(task.id);
  EXPECT_EQ(saved.status, TaskStatus::pending);
  EXPECT_EQ(saved.manualPosition, 3);
  EXPECT_EQ(saved.title, "Quarterly report");
  EXPECT_EQ(saved.accumulatedFocusSeconds, 120);
  EXPECT_EQ(saved.estimatedMinutes, 45);
  EXPECT_EQ(saved.updatedAt, kTestNow.advanced(5));
  EXPECT_FALSE(model->state().selectedTask);
  EXPECT_EQ(auditActions(), std::vector<std::string>{"task.update"});
}

TEST_F(AppModelTest, SaveWithNotificationsRefusedSavesTheTaskAndWarns) {
  const FocusTask task = makeTask().titled("Dentist").plannedOn(kToday);
  storeTasks({task});
  scheduler->status = ReminderAuthorization::denied;
  const auto model = makeRecoveredModel();

  FocusTask edited = scheduledTask(kTestNow.advanced(3600));
  edited.id = task.id;
  edited.createdAt = task.createdAt;
  model->saveTask(edited);

  EXPECT_EQ(storedTask(task.id)->scheduledStart, kTestNow.advanced(3600));
  EXPECT_EQ(model->state().reminderWarning, "Notifications are disabled in System Settings.");
  EXPECT_FALSE(model->state().editorError);
  EXPECT_TRUE(scheduler->pending.empty());

  // A clean save later doesn't take the old warning away.
  scheduler->status = ReminderAuthorization::authorized;
  model->saveTask(edited);
  EXPECT_EQ(model->state().reminderWarning, "Notifications are disabled in System Settings.");
  EXPECT_EQ(pendingRequestsOf(*scheduler, task.id), 3U);
}

TEST_F(AppModelTest, SaveWithAFailingSchedulerStillSavesAndSaysSo) {
  const FocusTask task = makeTask().titled("Dentist").plannedOn(kToday);
  storeTasks({task});
  scheduler->scheduleFailure = "The notification centre is busy.";
  const auto model = makeRecoveredModel();

  FocusTask edited = scheduledTask(kTestNow.advanced(3600));
  edited.id = task.id;
  model->saveTask(edited);
  EXPECT_EQ(storedTask(task.id)->title, "Call the bank");
  EXPECT_EQ(model->state().reminderWarning,
            "The task was saved, but its reminder could not be scheduled.");
}

TEST_F(AppModelTest, MoveTaskWithoutPositionGoesBehindItsPeersAndKeepsItsStart) {
  const LocalDay monday{2026, 11, 23};
  FocusTask first = makeTask().titled("First").plannedOn(monday);
  first.manualPosition = 0;
  FocusTask second = makeTask().titled("Second").plannedOn(monday);
  second.manualPosition = 1;
  const FocusTask moving = scheduledTask(kTestNow.advanced(7200));
  storeTasks({first, second, moving});
  const auto model = makeRecoveredModel();
  scheduler->calls.clear();

  model->moveTask(moving, monday);
  const FocusTask moved = *storedTask(moving.id);
  EXPECT_EQ(moved.plannedDay, monday);
  EXPECT_EQ(moved.manualPosition, 2);
  EXPECT_EQ(moved.scheduledStart, moving.scheduledStart);
  EXPECT_TRUE(scheduler->calls.empty());
  EXPECT_EQ(auditActions(), std::vector<std::string>{"task.move"});

  const std::vector<FocusTask> queue = [&] {
    model->setSelectedDay(monday);
    return model->state().selectedDayTasks();
  }();
  ASSERT_EQ(queue.size(), 3U);
  EXPECT_EQ(queue.back().id, moving.id);
}

TEST_F(AppModelTest, MoveTaskToAGivenPositionTakesIt) {
  const FocusTask task = makeTask().titled("Anywhere").plannedOn(kToday);
  storeTasks({task});
  const auto model = makeRecoveredModel();
  model->moveTask(task, {2026, 11, 24}, 7);
  EXPECT_EQ(storedTask(task.id)->manualPosition, 7);
  EXPECT_EQ(storedTask(task.id)->plannedDay, LocalDay(2026, 11, 24));
}

TEST_F(AppModelTest, UnscheduleTaskClearsDayStartAndPendingRemindersButKeepsPosition) {
  FocusTask task = scheduledTask(kTestNow.advanced(3600));
  task.manualPosition = 4;
  storeTasks({task});
  const auto model = makeRecoveredModel();
  model->saveTask(task);
  ASSERT_EQ(pendingRequestsOf(*scheduler, task.id), 3U);

  model->unscheduleTask(task);
  const FocusTask unscheduled = *storedTask(task.id);
  EXPECT_FALSE(unscheduled.plannedDay);
  EXPECT_FALSE(unscheduled.scheduledStart);
  EXPECT_EQ(unscheduled.manualPosition, 4);
  EXPECT_EQ(pendingRequestsOf(*scheduler, task.id), 0U);
  EXPECT_EQ(auditActions().back(), "task.unschedule");
}

TEST_F(AppModelTest, ReorderTaskWritesTheNewOrderOfTheSelectedDayOnly) {
  FocusTask a = makeTask().titled("A").plannedOn(kToday);
  a.manualPosition = 0;
  FocusTask b = makeTask().titled("B").plannedOn(kToday);
  b.manualPosition = 1;
  FocusTask c = makeTask().titled("C").plannedOn(kToday);
  c.manualPosition = 2;
  FocusTask other = makeTask().titled("Other day").plannedOn({2026, 11, 25});
  other.manualPosition = 5;
  storeTasks({a, b, c, other});
  const auto model = makeRecoveredModel();

  model->reorderTask(c.id, a.id);
  std::vector<std::string> titles;
  for (const FocusTask& task : model->state().selectedDayTasks()) titles.push_back(task.title);
  EXPECT_EQ(titles, (std::vector<std::string>{"C", "A", "B"}));
  EXPECT_EQ(storedTask(other.id)->manualPosition, 5);
  EXPECT_EQ(auditActions(), std::vector<std::string>{"task.reorder"});
}

TEST_F(AppModelTest, ReorderAfterALostRaceShowsTheCurrentOrderBeforeTheAlert) {
  FocusTask a = makeTask().titled("A").plannedOn(kToday);
  FocusTask b = makeTask().titled("B").plannedOn(kToday);
  b.manualPosition = 1;
  storeTasks({a, b});
  const auto model = makeRecoveredModel();

  PersistedState changed = stored();
  changed.tasks.push_back(makeTask().titled("New from elsewhere").plannedOn(kToday));
  changed.revision = 3;
  store(changed);
  model->reorderTask(b.id, a.id);

  EXPECT_EQ(model->state().editorError,
            "The task list changed. Refresh and try again (expected revision 0, current 3).");
  EXPECT_EQ(model->state().taskSnapshot.revision(), 3);
  EXPECT_EQ(model->state().tasks().size(), 3U);
}

TEST_F(AppModelTest, CompleteTaskOnAPausedTaskLeavesItsSegmentAndTheSession) {
  FocusTask paused = makeTask().titled("Paused").plannedOn(kToday).withStatus(TaskStatus::paused);
  paused.activeSegmentStartedAt = kTestNow.advanced(-600);
  storeTasks({paused});
  const auto model = makeRecoveredModel();
  model->start();
  ASSERT_TRUE(model->state().activeSession);

  model->completeTask(paused);
  const FocusTask completed = *storedTask(paused.id);
  EXPECT_EQ(completed.status, TaskStatus::completed);
  EXPECT_EQ(completed.completedAt, kTestNow);
  EXPECT_EQ(completed.activeSegmentStartedAt, kTestNow.advanced(-600));
  EXPECT_TRUE(model->state().activeSession);
  EXPECT_TRUE(stored().activeSession);
  EXPECT_TRUE(hostsBlock(DomainGroup::socialDistractions()));
  EXPECT_EQ(auditActions(), std::vector<std::string>{"task.complete"});
  EXPECT_EQ(scheduler->calls.back(), "cancel");
}

TEST_F(AppModelTest, StartTaskAsksForOneMinuteForAZeroEstimateAndTwentyFiveForNone) {
  FocusTask zero = makeTask().titled("Zero").plannedOn(kToday).estimated(0);
  zero.blockingGroupID = DomainGroup::socialDistractions().id;
  FocusTask none = makeTask().titled("None").plannedOn(kToday);
  none.blockingGroupID = DomainGroup::socialDistractions().id;
  storeTasks({zero, none});
  const auto model = makeRecoveredModel();

  model->startTask(zero);
  ASSERT_TRUE(model->state().activeSession);
  EXPECT_EQ(model->state().activeSession->endsAt.since(model->state().activeSession->startedAt),
            60);
  EXPECT_FALSE(model->state().isWorking);

  model->completeTask(*model->state().activeTask());
  ASSERT_FALSE(model->state().activeSession);
  model->startTask(none);
  ASSERT_TRUE(model->state().activeSession);
  EXPECT_EQ(model->state().activeSession->endsAt.since(model->state().activeSession->startedAt),
            1500);
}

TEST_F(AppModelTest, StartTaskShowsWorkWhileTheApprovalIsAsked) {
  FocusTask task = makeTask().titled("Blocked").plannedOn(kToday);
  task.blockingGroupID = DomainGroup::socialDistractions().id;
  storeTasks({task});
  const auto model = makeRecoveredModel();
  published.clear();

  bool workingDuringApproval = false;
  runner->thenReplace(
      [&](const std::filesystem::path& source, const std::filesystem::path& destination) {
        workingDuringApproval = !published.empty() && published.back().isWorking;
        FakePrivilegedRunner::copies()(source, destination);
      });
  model->startTask(task);
  EXPECT_TRUE(workingDuringApproval);
  EXPECT_FALSE(published.back().isWorking);
}

TEST_F(AppModelTest, StartTaskWhoseBlockingIsRefusedUndoesTheStartAndAlerts) {
  FocusTask task = makeTask().titled("Blocked").plannedOn(kToday);
  task.blockingGroupID = DomainGroup::socialDistractions().id;
  storeTasks({task});
  const auto model = makeRecoveredModel();
  runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));

  model->startTask(task);
  EXPECT_EQ(model->state().editorError,
            "Administrator approval was cancelled. No changes were made.");
  EXPECT_EQ(storedTask(task.id)->status, TaskStatus::pending);
  EXPECT_EQ(model->state().taskSnapshot.revision(), stored().revision);
  EXPECT_EQ(auditActions(), (std::vector<std::string>{"task.start", "task.start.cancel"}));
  EXPECT_FALSE(model->state().isWorking);
}

// ---- review ----

TEST_F(AppModelTest, ApproveAllWithAStaleSecondProposalAlertsOnceAndApprovesTheOthers) {
  const LocalDay monday{2026, 11, 16};
  const LocalDay tuesday{2026, 11, 17};
  const LocalDay wednesday{2026, 11, 18};
  const FocusTask a = makeTask().titled("A").plannedOn(monday);
  const FocusTask b = makeTask().titled("B").plannedOn({2026, 11, 20});
  const FocusTask c = makeTask().titled("C").plannedOn(wednesday);
  PersistedState state = PersistedState::initial();
  state.tasks = {a, b, c};
  const auto proposalFor = [](const FocusTask& task, LocalDay from) {
    return PlanningProposal{.id = Uuid::random(),
                            .kind = ProposalKind::reduceLoad,
                            .taskID = task.id,
                            .reason = "Move work from an overloaded day",
                            .originalPlannedDay = from,
                            .suggestedPlannedDay = LocalDay{2026, 11, 27},
                            .status = ProposalStatus::pending,
                            .createdAt = kTestNow};
  };
  // B was moved away from Tuesday after its proposal was made.
  state.proposals = {proposalFor(a, monday), proposalFor(b, tuesday), proposalFor(c, wednesday)};
  store(state);
  const auto model = makeRecoveredModel();
  ASSERT_EQ(model->state().pendingProposals().size(), 3U);
  published.clear();

  model->approveAllProposals();
  EXPECT_EQ(alertsShown(), 1);
  EXPECT_EQ(model->state().editorError, kTaskChanged);
  const std::vector<PlanningProposal> proposals = stored().proposals;
  EXPECT_EQ(proposals[0].status, ProposalStatus::approved);
  EXPECT_EQ(proposals[1].status, ProposalStatus::pending);
  EXPECT_EQ(proposals[2].status, ProposalStatus::approved);
  // The third attempt came after the failed second, at the revision the first one left.
  EXPECT_EQ(auditActions(), (std::vector<std::string>{"proposal.approve", "proposal.approve"}));
  EXPECT_EQ(storedTask(c.id)->plannedDay, LocalDay(2026, 11, 27));
  EXPECT_EQ(model->state().pendingProposals().size(), 1U);
}

TEST_F(AppModelTest, DismissAllProposalsDismissesEachPendingOne) {
  const FocusTask a = makeTask().titled("A").plannedOn(kToday);
  PersistedState state = PersistedState::initial();
  state.tasks = {a};
  state.proposals = {PlanningProposal{.taskID = a.id, .originalPlannedDay = kToday},
                     PlanningProposal{.taskID = a.id, .originalPlannedDay = kToday}};
  store(state);
  const auto model = makeRecoveredModel();
  model->dismissAllProposals();
  EXPECT_TRUE(model->state().pendingProposals().empty());
  EXPECT_EQ(auditActions(), (std::vector<std::string>{"proposal.dismiss", "proposal.dismiss"}));
  EXPECT_FALSE(model->state().editorError);
}

TEST_F(AppModelTest, ChangeReviewWeekMovesByWholeWeeks) {
  const auto model = makeModel();
  model->changeReviewWeek(-2);
  EXPECT_EQ(model->state().reviewDate, kTestNow.advanced(-14 * 86400));
  EXPECT_EQ(model->state().reviewWeekDays().front(), LocalDay(2026, 11, 2));
}

// ---- blocking ----

TEST_F(AppModelTest, AddDomainInAnotherCaseOrWithASchemeIsADuplicate) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();

  for (const std::string input : {"FACEBOOK.com", "https://facebook.com/"}) {
    model->clearEditorError();
    model->setDomainInput(input);
    model->addDomain();
    EXPECT_EQ(model->state().editorError, kDuplicate) << input;
    EXPECT_EQ(model->state().domainInput, input);
  }
  EXPECT_EQ(stored().groups, std::vector{DomainGroup::socialDistractions()});
}

TEST_F(AppModelTest, AddDomainDuringAStrictSessionShowsTheLockAndKeepsTheInput) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  model->setSelectedMode(SessionMode::strict);
  model->start();
  ASSERT_EQ(model->state().activeSession->mode, SessionMode::strict);

  model->setDomainInput("example.com");
  model->addDomain();
  EXPECT_EQ(model->state().editorError, kStrictLocked);
  EXPECT_EQ(model->state().domainInput, "example.com");
  EXPECT_EQ(stored().groups, std::vector{DomainGroup::socialDistractions()});
}

TEST_F(AppModelTest, AddDomainWithoutASelectedGroupGoesToTheFirstGroup) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  // Bring the selection to absent the one way it gets there: a start-up pass with no groups.
  model->engine().replaceGroups({});
  const std::string good = readBytes(folders.stateFile());
  writeBytes(folders.stateFile(), "not json");
  model->recover();
  ASSERT_FALSE(model->state().selectedGroupID);
  writeBytes(folders.stateFile(), good);
  const DomainGroup news = makeNewsGroup();
  model->engine().replaceGroups({news, DomainGroup::socialDistractions()});
  model->clearEditorError();

  model->setDomainInput("Reddit.com");
  model->addDomain();
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().domainInput, "");
  ASSERT_EQ(stored().groups.size(), 2U);
  EXPECT_EQ(domainsOf(stored().groups[0]),
            (std::vector<std::string>{"example.com", "news.example.org", "reddit.com"}));
  EXPECT_EQ(stored().groups[1], DomainGroup::socialDistractions());
}

TEST_F(AppModelTest, AddDomainWithNoGroupsDoesNothingNotEvenClearTheInput) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  model->engine().replaceGroups({});
  const std::string before = readBytes(folders.stateFile());

  model->setDomainInput("example.com");
  model->addDomain();
  EXPECT_EQ(model->state().domainInput, "example.com");
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(readBytes(folders.stateFile()), before);
}

TEST_F(AppModelTest, SetEnabledAndRemoveEditTheSelectedGroup) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  const DomainRule facebook = DomainGroup::socialDistractions().rules[0];
  ASSERT_EQ(facebook.id, kFacebookRule);

  model->setEnabled(facebook, false);
  EXPECT_FALSE(stored().groups[0].rules[0].isEnabled);
  EXPECT_FALSE(model->state().selectedGroup().rules[0].isEnabled);

  model->remove(facebook);
  EXPECT_EQ(stored().groups[0].rules.size(), 4U);
  EXPECT_EQ(model->state().groups[0].rules.size(), 4U);
  EXPECT_FALSE(model->state().editorError);
}

TEST_F(AppModelTest, StartAndEndFlexibleRunASessionOfTheChosenLength) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  model->setDurationChoice(DurationChoice::custom);
  model->setCustomMinutes(45);
  clock->advance(3);
  model->start();
  ASSERT_TRUE(model->state().activeSession);
  // The session's times come from the clock, not the last heartbeat.
  EXPECT_EQ(model->state().activeSession->startedAt, kTestNow.advanced(3));
  EXPECT_EQ(model->state().activeSession->endsAt, kTestNow.advanced(3 + 45 * 60));
  EXPECT_TRUE(hostsBlock(DomainGroup::socialDistractions()));
  EXPECT_FALSE(model->state().isWorking);

  model->endFlexible();
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_TRUE(hostsFileIsPlain());
  EXPECT_FALSE(model->state().editorError);
}

// ---- data safety ----

TEST_F(AppModelTest, AfterRestoreTasksShowTheRestoredPlanWhileGroupsStayUntilRecover) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.tasks = {makeTask().titled("Kept").plannedOn(kToday)};
  store(state);
  const auto model = makeRecoveredModel();
  const std::filesystem::path backup = folder / "Exports" / "plan.json";
  model->exportBackup(backup);
  EXPECT_EQ(model->state().backupStatus, "Exported · plan.json");

  model->setQuickTitle("Added after the export");
  model->addTask();
  model->engine().replaceGroups({DomainGroup::socialDistractions()});
  ASSERT_EQ(model->state().tasks().size(), 2U);

  model->restoreBackup(backup);
  EXPECT_EQ(model->state().backupStatus, "Restored · plan.json");
  ASSERT_EQ(model->state().tasks().size(), 1U);
  EXPECT_EQ(model->state().tasks()[0].title, "Kept");
  EXPECT_EQ(model->state().groups, std::vector{DomainGroup::socialDistractions()});

  model->recover();
  EXPECT_EQ(model->state().groups, std::vector{news});
}

TEST_F(AppModelTest, FailedExportAndRestoreSpeakThroughTheAlertAlone) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  const std::string status = model->state().backupStatus;
  writeBytes(folder / "broken.json", "{");

  model->restoreBackup(folder / "broken.json");
  EXPECT_TRUE(model->state().editorError);
  EXPECT_EQ(model->state().backupStatus, status);

  model->clearEditorError();
  writeBytes(folder / "blocker", "a file where a folder should be");
  model->exportBackup(folder / "blocker" / "plan.json");
  EXPECT_TRUE(model->state().editorError);
  EXPECT_EQ(model->state().backupStatus, status);
}

}  // namespace
}  // namespace brindlet::testing

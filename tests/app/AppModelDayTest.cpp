// A whole day of use on a fixed clock and a runner that approves, ending in a restart.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AppModelFixture.h"

namespace brindlet::testing {
namespace {

std::vector<std::string> titlesOf(const std::vector<FocusTask>& tasks) {
  std::vector<std::string> titles;
  for (const FocusTask& task : tasks) titles.push_back(task.title);
  return titles;
}

FocusTask taskTitled(const AppModelState& state, const std::string& title) {
  for (const FocusTask& task : state.tasks()) {
    if (task.title == title) return task;
  }
  ADD_FAILURE() << "no task " << title;
  return {};
}

TEST_F(AppModelTest, ADayInTheLifeSurvivesARestart) {
  const auto model = makeRecoveredModel();
  model->clearEditorError();  // the first launch's backup alert

  // Three tasks, then the last one dragged to the top.
  for (const char* title : {"Write report", "Review changes", "Plan sprint"}) {
    model->setQuickTitle(title);
    model->addTask();
  }
  ASSERT_FALSE(model->state().editorError);
  const FocusTask write = taskTitled(model->state(), "Write report");
  const FocusTask plan = taskTitled(model->state(), "Plan sprint");
  model->reorderTask(plan.id, write.id);
  EXPECT_EQ(titlesOf(model->state().selectedDayTasks()),
            (std::vector<std::string>{"Plan sprint", "Write report", "Review changes"}));

  // The first task of the day blocks the seeded group for its estimate.
  FocusTask first = model->state().selectedDayTasks().front();
  first.estimatedMinutes = 30;
  first.blockingGroupID = DomainGroup::socialDistractions().id;
  model->setSelectedTask(first);
  model->saveTask(first);
  model->startTask(taskTitled(model->state(), "Plan sprint"));
  ASSERT_FALSE(model->state().editorError);
  ASSERT_TRUE(model->state().activeTask());
  EXPECT_EQ(model->state().activeTask()->title, "Plan sprint");
  EXPECT_TRUE(hostsBlock(DomainGroup::socialDistractions()));
  EXPECT_EQ(model->state().elapsedText(*model->state().activeTask()), "00:00");
  EXPECT_EQ(model->state().countdown(), "30:00");

  for (int second = 0; second < 60; ++second) {
    clock->advance(1);
    model->heartbeat();
  }
  EXPECT_EQ(model->state().elapsedText(*model->state().activeTask()), "01:00");
  EXPECT_EQ(model->state().countdown(), "29:00");

  model->pauseActiveTask();
  EXPECT_EQ(model->state().activeTask()->status, TaskStatus::paused);
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_TRUE(hostsFileIsPlain());

  clock->advance(300);
  model->heartbeat();
  model->resumeTask(*model->state().activeTask());
  EXPECT_EQ(model->state().activeTask()->status, TaskStatus::active);
  EXPECT_EQ(model->state().countdown(), "30:00");
  clock->advance(120);
  model->heartbeat();
  model->completeTask(*model->state().activeTask());
  const FocusTask done = taskTitled(model->state(), "Plan sprint");
  EXPECT_EQ(done.status, TaskStatus::completed);
  EXPECT_EQ(model->state().focusedDurationText(done), "3m focused");
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_TRUE(hostsFileIsPlain());

  // Nine hours of estimates on one day: the review proposes moving the first open task.
  for (const auto& [title, minutes] : std::vector<std::pair<std::string, std::int64_t>>{
           {"Write report", 300}, {"Review changes", 240}}) {
    FocusTask task = taskTitled(model->state(), title);
    task.estimatedMinutes = minutes;
    model->saveTask(task);
  }
  model->generateRecommendations();
  ASSERT_EQ(model->state().pendingProposals().size(), 1U);
  const PlanningProposal proposal = model->state().pendingProposals().front();
  EXPECT_EQ(proposal.kind, ProposalKind::reduceLoad);
  model->approveProposal(proposal);
  EXPECT_TRUE(model->state().pendingProposals().empty());
  const FocusTask movedTask = [&] {
    for (const FocusTask& task : model->state().tasks()) {
      if (task.id == proposal.taskID) return task;
    }
    return FocusTask{};
  }();
  EXPECT_EQ(movedTask.plannedDay, LocalDay(2026, 11, 22));

  // A backup taken and brought back undoes what came after it.
  const std::filesystem::path backup = folders.documents / "Exports" / "day.json";
  model->exportBackup(backup);
  model->setQuickTitle("After the export");
  model->addTask();
  ASSERT_EQ(model->state().tasks().size(), 4U);
  model->restoreBackup(backup);
  ASSERT_EQ(model->state().tasks().size(), 3U);
  EXPECT_FALSE(model->state().editorError);

  // A restart: a second model on the same folders finds everything as it was.
  const AppModelState before = model->state();
  published.clear();
  const auto restarted = makeRecoveredModel();
  EXPECT_FALSE(restarted->state().editorError);
  EXPECT_EQ(restarted->state().taskSnapshot.revision(), before.taskSnapshot.revision());
  EXPECT_EQ(restarted->state().tasks(), before.tasks());
  EXPECT_EQ(restarted->state().groups, before.groups);
  EXPECT_FALSE(restarted->state().activeSession);
  EXPECT_EQ(restarted->state().backupStatus, "Protected today · Brindlet-2026-11-21.json");
  EXPECT_EQ(filesIn(folders.dailyBackupFolder()).size(), 1U);
  EXPECT_FALSE(restarted->state().protectionError);
}

}  // namespace
}  // namespace brindlet::testing

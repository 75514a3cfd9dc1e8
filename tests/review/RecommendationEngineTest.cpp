#include <gtest/gtest.h>

#include "Builders.h"
#include "TempDir.h"
#include "review/RecommendationEngine.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeTask;

const Calendar kCalendar("UTC", Calendar::kMonday);
const Instant kWednesday = *Instant::fromIso8601("2026-11-18T12:00:00Z");
constexpr LocalDay kMonday{2026, 11, 16};

std::vector<PlanningProposal> proposalsFor(const std::vector<FocusTask>& tasks,
                                           std::int64_t capacity = 480) {
  const WeeklyReview review = RecommendationEngine::review(kWednesday, tasks, kCalendar);
  return RecommendationEngine::proposals(review, tasks, capacity, kTestNow);
}

TEST(RecommendationEngineTest, WorkloadOfExactlyTheCapacityGivesNoProposalAndOneMoreGivesOne) {
  const FocusTask big = makeTask().plannedOn(kMonday).estimated(400);
  const FocusTask small = makeTask().plannedOn(kMonday).estimated(80);
  EXPECT_TRUE(proposalsFor({big, small}).empty());
  const FocusTask extra = makeTask().plannedOn(kMonday).estimated(1);
  const auto proposals = proposalsFor({big, small, extra});
  ASSERT_EQ(proposals.size(), 1U);
  EXPECT_EQ(proposals[0].kind, ProposalKind::reduceLoad);
  EXPECT_EQ(proposals[0].taskID, big.id);
  EXPECT_EQ(proposals[0].reason, "Move work from an overloaded day");
  EXPECT_EQ(proposals[0].originalPlannedDay, kMonday);
  EXPECT_EQ(proposals[0].suggestedPlannedDay, LocalDay(2026, 11, 17));
  EXPECT_EQ(proposals[0].status, ProposalStatus::pending);
  EXPECT_EQ(proposals[0].createdAt, kTestNow);
}

TEST(RecommendationEngineTest, OverloadOfTasksNowCompletedGivesNoProposalForThatDay) {
  const FocusTask open = makeTask().plannedOn(kMonday).estimated(600);
  const WeeklyReview review = RecommendationEngine::review(kWednesday, {open}, kCalendar);
  FocusTask done = open;
  done.status = TaskStatus::completed;
  EXPECT_TRUE(RecommendationEngine::proposals(review, {done}, 480, kTestNow).empty());
}

TEST(RecommendationEngineTest, AmongEqualPrioritiesTheLongerTaskIsProposedThenTheFirstId) {
  const FocusTask shorter = makeTask().plannedOn(kMonday).estimated(250);
  const FocusTask longer = makeTask().plannedOn(kMonday).estimated(260);
  EXPECT_EQ(proposalsFor({shorter, longer})[0].taskID, longer.id);
  const FocusTask twin1 = makeTask().plannedOn(kMonday).estimated(250);
  const FocusTask twin2 = makeTask().plannedOn(kMonday).estimated(250);
  const Uuid first = std::min(twin1.id, twin2.id, [](const Uuid& a, const Uuid& b) {
    return a.uppercaseText() < b.uppercaseText();
  });
  EXPECT_EQ(proposalsFor({twin1, twin2})[0].taskID, first);
}

TEST(RecommendationEngineTest, HigherPriorityIsProposedBeforeALongerTask) {
  const FocusTask longer = makeTask().plannedOn(kMonday).estimated(400);
  const FocusTask urgent =
      makeTask().plannedOn(kMonday).estimated(100).withPriority(TaskPriority::critical);
  EXPECT_EQ(proposalsFor({longer, urgent})[0].taskID, urgent.id);
}

TEST(RecommendationEngineTest, SkipCountOfOneGivesNoProposalAndTwoGivesOne) {
  FocusTask task = makeTask().plannedOn({2026, 12, 31});
  task.skipCount = 1;
  EXPECT_TRUE(proposalsFor({task}).empty());
  task.skipCount = 2;
  const auto proposals = proposalsFor({task});
  ASSERT_EQ(proposals.size(), 1U);
  EXPECT_EQ(proposals[0].kind, ProposalKind::reschedule);
  EXPECT_EQ(proposals[0].reason, "This task has been skipped repeatedly");
  EXPECT_EQ(proposals[0].suggestedPlannedDay, LocalDay(2027, 1, 1));
}

TEST(RecommendationEngineTest, FiveOverloadedDaysGiveThreeProposalsForTheEarliestDays) {
  std::vector<FocusTask> tasks;
  for (std::int64_t day = 20; day >= 16; --day) {
    tasks.push_back(makeTask().plannedOn({2026, 11, day}).estimated(500));
  }
  FocusTask skipped = makeTask().plannedOn({2026, 11, 16});
  skipped.skipCount = 5;
  tasks.push_back(skipped);
  const auto proposals = proposalsFor(tasks);
  ASSERT_EQ(proposals.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(proposals[i].kind, ProposalKind::reduceLoad);
    EXPECT_EQ(proposals[i].originalPlannedDay, LocalDay(2026, 11, std::int64_t(16 + i)));
  }
}

TEST(RecommendationEngineTest, TopOfAnOverloadedDaySkippedTwiceGivesTwoProposalsOfDifferentKinds) {
  FocusTask task = makeTask().plannedOn(kMonday).estimated(600);
  task.skipCount = 2;
  const auto proposals = proposalsFor({task});
  ASSERT_EQ(proposals.size(), 2U);
  EXPECT_EQ(proposals[0].kind, ProposalKind::reduceLoad);
  EXPECT_EQ(proposals[1].kind, ProposalKind::reschedule);
  EXPECT_EQ(proposals[0].taskID, proposals[1].taskID);
}

class RecommendationStoreTest : public ::testing::Test {
 protected:
  testing::TempDir dir;
  LocalStore local{dir / "state.json"};
  std::unique_ptr<TaskStore> store;
  std::unique_ptr<RecommendationEngine> engine;

  void start(std::vector<FocusTask> tasks) {
    PersistedState state = PersistedState::initial();
    state.tasks = std::move(tasks);
    local.save(state);
    store = std::make_unique<TaskStore>(local);
    engine = std::make_unique<RecommendationEngine>(*store);
  }
  std::int64_t revision() { return store->snapshot().revision(); }
  const PersistedState& state() { return *(latest_ = store->snapshot().sharedState()); }
  PlanningProposal saveOne(const std::vector<FocusTask>& tasks) {
    const auto proposals = proposalsFor(tasks);
    EXPECT_FALSE(proposals.empty());
    engine->save(proposals, revision(), kTestNow);
    return proposals.front();
  }
  std::string approvalFailure(const Uuid& id) {
    try {
      engine->approve(id, revision(), kTestNow);
    } catch (const BrindletError& error) {
      return error.description();
    }
    return "approved";
  }

 private:
  std::shared_ptr<const PersistedState> latest_;
};

TEST_F(RecommendationStoreTest,
       SkippedTaskWithoutDayGetsNoSuggestedDayAndApprovingLeavesItUnplanned) {
  FocusTask task = makeTask();
  task.skipCount = 2;
  start({task});
  const PlanningProposal proposal = saveOne({task});
  EXPECT_FALSE(proposal.suggestedPlannedDay.has_value());
  engine->approve(proposal.id, revision(), kTestNow.advanced(5));
  EXPECT_FALSE(state().tasks[0].plannedDay.has_value());
  EXPECT_EQ(state().tasks[0].updatedAt, kTestNow.advanced(5));
  EXPECT_EQ(state().proposals[0].status, ProposalStatus::approved);
}

TEST_F(RecommendationStoreTest, ApprovingMovesTheTaskAndKeepsItsPositionAndStatus) {
  FocusTask task = makeTask().plannedOn(kMonday).estimated(500).withStatus(TaskStatus::paused);
  task.manualPosition = 7;
  start({task});
  const PlanningProposal proposal = saveOne({task});
  const TaskStoreSnapshot after = engine->approve(proposal.id, revision(), kTestNow);
  EXPECT_EQ(after.state().tasks[0].plannedDay, LocalDay(2026, 11, 17));
  EXPECT_EQ(after.state().tasks[0].manualPosition, 7);
  EXPECT_EQ(after.state().tasks[0].status, TaskStatus::paused);
  const TaskAuditEvent& event = after.state().auditEvents.back();
  EXPECT_EQ(event.action, "proposal.approve");
  EXPECT_EQ(event.source, MutationSource::user);
  EXPECT_FALSE(event.taskID.has_value());
}

TEST_F(RecommendationStoreTest, ApprovingAfterTheTaskMovedFailsAndTheProposalStaysPending) {
  const FocusTask task = makeTask().plannedOn(kMonday).estimated(500);
  start({task});
  const PlanningProposal proposal = saveOne({task});
  store->transact(revision(), MutationSource::user, "task.move", task.id, kTestNow,
                  [](PersistedState& s) {
                    s.tasks[0].plannedDay = LocalDay{2026, 11, 20};
                  });
  EXPECT_EQ(approvalFailure(proposal.id),
            "The task changed after this recommendation was created. Generate a new review.");
  EXPECT_EQ(state().proposals[0].status, ProposalStatus::pending);
}

TEST_F(RecommendationStoreTest, ApprovingAProposalWhoseTaskWasDeletedFailsTheSameWay) {
  const FocusTask task = makeTask().plannedOn(kMonday).estimated(500);
  start({task});
  const PlanningProposal proposal = saveOne({task});
  store->transact(revision(), MutationSource::user, "task.delete", task.id, kTestNow,
                  [](PersistedState& s) { s.tasks.clear(); });
  EXPECT_EQ(approvalFailure(proposal.id),
            "The task changed after this recommendation was created. Generate a new review.");
}

TEST_F(RecommendationStoreTest, ApprovingADismissedProposalFailsAsAlreadyHandled) {
  const FocusTask task = makeTask().plannedOn(kMonday).estimated(500);
  start({task});
  const PlanningProposal proposal = saveOne({task});
  const TaskStoreSnapshot dismissed = engine->dismiss(proposal.id, revision(), kTestNow);
  EXPECT_EQ(dismissed.state().proposals[0].status, ProposalStatus::dismissed);
  EXPECT_EQ(dismissed.state().tasks[0].plannedDay, kMonday);
  EXPECT_EQ(approvalFailure(proposal.id), "The recommendation was already handled.");
  EXPECT_EQ(approvalFailure(Uuid::random()), "The recommendation no longer exists.");
}

TEST_F(RecommendationStoreTest, NewSaveRemovesPendingProposalsOfThePreviousGeneration) {
  const FocusTask task = makeTask().plannedOn(kMonday).estimated(500);
  FocusTask skipped = makeTask().plannedOn({2026, 11, 18});
  skipped.skipCount = 3;
  start({task, skipped});
  const auto first = proposalsFor({task, skipped});
  ASSERT_EQ(first.size(), 2U);
  engine->save(first, revision(), kTestNow);
  engine->dismiss(first[1].id, revision(), kTestNow);
  const TaskStoreSnapshot second = engine->save(proposalsFor({task}), revision(), kTestNow);
  ASSERT_EQ(second.state().proposals.size(), 2U);
  EXPECT_EQ(second.state().proposals[0].id, first[1].id);
  EXPECT_EQ(second.state().proposals[0].status, ProposalStatus::dismissed);
  EXPECT_NE(second.state().proposals[1].id, first[0].id);
  EXPECT_EQ(second.state().auditEvents.back().action, "proposals.generate");
  EXPECT_EQ(second.state().auditEvents.back().source, MutationSource::agent);
  engine->save({}, revision(), kTestNow);
  EXPECT_EQ(state().proposals.size(), 1U);
}

}  // namespace
}  // namespace brindlet

#include <gtest/gtest.h>

#include "Builders.h"
#include "records/FocusTask.h"

namespace brindlet {
namespace {

using testing::kTestNow;
using testing::makeTask;

std::string validationMessage(const FocusTask& task) {
  try {
    task.validate();
  } catch (const ProductivityValidationError& error) {
    return error.description();
  }
  return "valid";
}

TEST(FocusTaskTest, TitleOfOnlySpacesAndLineEndsFailsWithBlankTitle) {
  try {
    const FocusTask task(" \n\t \r\n\u00a0", kTestNow);
    FAIL() << "constructed";
  } catch (const ProductivityValidationError& error) {
    EXPECT_EQ(error.which(), ProductivityValidationError::Case::blankTitle);
    EXPECT_EQ(error.description(), "Enter a task title.");
  }
}

TEST(FocusTaskTest, TitleWithSpacesAroundAndTrailingLineEndIsStoredWithoutThem) {
  const FocusTask task("  Write the report \n", kTestNow, {.notes = "  kept as typed \n"});
  EXPECT_EQ(task.title, "Write the report");
  EXPECT_EQ(task.notes, "  kept as typed \n");
}

TEST(FocusTaskTest, EstimateOf1440Passes) {
  EXPECT_EQ(validationMessage(makeTask().estimated(1440)), "valid");
  EXPECT_EQ(validationMessage(makeTask().estimated(0)), "valid");
}

TEST(FocusTaskTest, EstimateOf1441FailsWithTheNegativeEstimateMessage) {
  EXPECT_EQ(validationMessage(makeTask().estimated(1441)), "Estimated time cannot be negative.");
}

TEST(FocusTaskTest, EstimateOfMinusOneFailsWithTheSameMessage) {
  EXPECT_EQ(validationMessage(makeTask().estimated(-1)), "Estimated time cannot be negative.");
}

TEST(FocusTaskTest, ConstructorValidatesTheEstimate) {
  EXPECT_THROW(FocusTask("Title", kTestNow, {.estimatedMinutes = 2000}),
               ProductivityValidationError);
}

TEST(FocusTaskTest, TaskConstructedWithCreatedAtOnlyHasUpdatedAtEqualToIt) {
  const FocusTask task("Plan", kTestNow);
  EXPECT_EQ(task.createdAt, kTestNow);
  EXPECT_EQ(task.updatedAt, kTestNow);
  const FocusTask later("Plan", kTestNow, {.updatedAt = kTestNow.advanced(5)});
  EXPECT_EQ(later.updatedAt, kTestNow.advanced(5));
}

TEST(FocusTaskTest, NewTaskHasTheDefaultsOfATask) {
  const FocusTask task("Plan", kTestNow);
  EXPECT_EQ(task.notes, "");
  EXPECT_EQ(task.priority, TaskPriority::normal);
  EXPECT_EQ(task.status, TaskStatus::pending);
  EXPECT_EQ(task.manualPosition, 0);
  EXPECT_EQ(task.skipCount, 0);
  EXPECT_EQ(task.accumulatedFocusSeconds, 0);
  EXPECT_FALSE(task.plannedDay || task.scheduledStart || task.estimatedMinutes || task.reminder ||
               task.blockingGroupID || task.startedAt || task.completedAt || task.lastSkippedAt ||
               task.activeSegmentStartedAt);
  EXPECT_NE(task.id, FocusTask("Plan", kTestNow).id);
}

TEST(FocusTaskTest, ValidationLooksAtTheTrimmedTitleWithoutChangingIt) {
  FocusTask task = makeTask();
  task.title = "  padded  ";
  EXPECT_EQ(validationMessage(task), "valid");
  EXPECT_EQ(task.title, "  padded  ");
}

TEST(FocusTaskTest, PriorityRankIsTheOrderOfAllCases) {
  EXPECT_EQ(rank(TaskPriority::critical), 0);
  EXPECT_EQ(rank(TaskPriority::high), 1);
  EXPECT_EQ(rank(TaskPriority::normal), 2);
  EXPECT_EQ(rank(TaskPriority::low), 3);
  EXPECT_EQ(kAllTaskPriorities.front(), TaskPriority::critical);
  EXPECT_EQ(kAllTaskPriorities.back(), TaskPriority::low);
}

TEST(FocusTaskTest, DefaultReminderRemindsWhenOverdueOnly) {
  const TaskReminder reminder;
  EXPECT_TRUE(reminder.isEnabled);
  EXPECT_FALSE(reminder.remindTenMinutesBefore);
  EXPECT_TRUE(reminder.remindWhenOverdue);
}

}  // namespace
}  // namespace brindlet

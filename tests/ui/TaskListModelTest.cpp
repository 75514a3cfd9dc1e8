// The task rows behind the queue, under Qt's own consistency checks.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "TaskListModel.h"

namespace brindlet::ui {
namespace {

TaskRowData row(const QString& id, const QString& title) {
  return TaskRowData{.taskId = id, .title = title, .priority = QStringLiteral("normal")};
}

TEST(TaskListModelTest, KeepsItsRowsConsistentThroughResetsAndChanges) {
  TaskListModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setRows({row("A", "One"), row("B", "Two")});
  EXPECT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.data(model.index(1), TaskListModel::TitleRole).toString(), "Two");
  model.setRows({row("B", "Two"), row("A", "One")});
  EXPECT_EQ(model.data(model.index(0), TaskListModel::TaskIdRole).toString(), "B");
  model.setRows({});
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(TaskListModelTest, TheSameTasksInTheSameOrderOnlyChangeTheRowsThatDiffer) {
  TaskListModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setRows({row("A", "One"), row("B", "Two")});
  QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
  QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
  model.setRows({row("A", "One"), row("B", "Two, renamed")});
  EXPECT_EQ(resets.count(), 0);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex().row(), 1);
}

}  // namespace
}  // namespace brindlet::ui

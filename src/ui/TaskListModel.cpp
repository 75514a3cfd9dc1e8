#include "TaskListModel.h"

#include <algorithm>

namespace brindlet::ui {

int TaskListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant TaskListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
    return {};
  }
  const TaskRowData& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
      return row.title;
    case TaskIdRole:
      return row.taskId;
    case CompletedRole:
      return row.completed;
    case PriorityRole:
      return row.priority;
    case PriorityTitleRole:
      return row.priorityTitle;
    case EstimateTextRole:
      return row.estimateText;
    case FocusedTextRole:
      return row.focusedText;
    case HasReminderRole:
      return row.hasReminder;
    default:
      return {};
  }
}

QHash<int, QByteArray> TaskListModel::roleNames() const {
  return {
      {TaskIdRole, "taskId"},
      {TitleRole, "title"},
      {CompletedRole, "completed"},
      {PriorityRole, "priority"},
      {PriorityTitleRole, "priorityTitle"},
      {EstimateTextRole, "estimateText"},
      {FocusedTextRole, "focusedText"},
      {HasReminderRole, "hasReminder"},
  };
}

void TaskListModel::setRows(std::vector<TaskRowData> rows) {
  const bool sameTasks =
      rows.size() == rows_.size() &&
      std::equal(rows.begin(), rows.end(), rows_.begin(),
                 [](const TaskRowData& a, const TaskRowData& b) { return a.taskId == b.taskId; });
  if (!sameTasks) {
    const bool countChanges = rows.size() != rows_.size();
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    if (countChanges) emit countChanged();
    return;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i] == rows_[i]) continue;
    rows_[i] = std::move(rows[i]);
    const QModelIndex changed = index(static_cast<int>(i));
    emit dataChanged(changed, changed);
  }
}

}  // namespace brindlet::ui

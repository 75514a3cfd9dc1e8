#include "TaskListModel.h"

#include <algorithm>

namespace brindlet::ui {

TaskListModel::TaskListModel(QObject* parent)
    : RowListModel({"taskId", "title", "completed", "priority", "priorityTitle", "estimateText",
                    "focusedText", "hasReminder"},
                   parent) {}

QVariant TaskListModel::field(std::size_t index, int column) const {
  const TaskRowData& row = rows_[index];
  switch (column) {
    case 0:
      return row.taskId;
    case 1:
      return row.title;
    case 2:
      return row.completed;
    case 3:
      return row.priority;
    case 4:
      return row.priorityTitle;
    case 5:
      return row.estimateText;
    case 6:
      return row.focusedText;
    case 7:
      return row.hasReminder;
    default:
      return {};
  }
}

void TaskListModel::setRows(std::vector<TaskRowData> rows) {
  replaceRows(rows_, std::move(rows), &TaskRowData::taskId);
}

}  // namespace brindlet::ui

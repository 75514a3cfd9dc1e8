#include "ReviewCompletedListModel.h"

#include <algorithm>

namespace brindlet::ui {

int ReviewCompletedListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant ReviewCompletedListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
    return {};
  }
  const CompletedRowData& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
      return row.title;
    case TaskIdRole:
      return row.taskId;
    case ElapsedTextRole:
      return row.elapsedText;
    default:
      return {};
  }
}

QHash<int, QByteArray> ReviewCompletedListModel::roleNames() const {
  return {
      {TaskIdRole, "taskId"},
      {TitleRole, "title"},
      {ElapsedTextRole, "elapsedText"},
  };
}

void ReviewCompletedListModel::setRows(std::vector<CompletedRowData> rows) {
  const bool sameTasks = std::ranges::equal(
      rows, rows_, [](const auto& a, const auto& b) { return a.taskId == b.taskId; });
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

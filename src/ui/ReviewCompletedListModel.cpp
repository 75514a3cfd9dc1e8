#include "ReviewCompletedListModel.h"

#include <algorithm>

namespace brindlet::ui {

ReviewCompletedListModel::ReviewCompletedListModel(QObject* parent)
    : RowListModel({"taskId", "title", "elapsedText"}, parent) {}

QVariant ReviewCompletedListModel::field(std::size_t index, int column) const {
  const CompletedRowData& row = rows_[index];
  switch (column) {
    case 0:
      return row.taskId;
    case 1:
      return row.title;
    case 2:
      return row.elapsedText;
    default:
      return {};
  }
}

void ReviewCompletedListModel::setRows(std::vector<CompletedRowData> rows) {
  replaceRows(rows_, std::move(rows), &CompletedRowData::taskId);
}

}  // namespace brindlet::ui

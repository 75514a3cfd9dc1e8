#include "ReviewProposalListModel.h"

#include <algorithm>

namespace brindlet::ui {

ReviewProposalListModel::ReviewProposalListModel(QObject* parent)
    : RowListModel({"proposalId", "reason", "taskTitle", "change"}, parent) {}

QVariant ReviewProposalListModel::field(std::size_t index, int column) const {
  const ProposalRowData& row = rows_[index];
  switch (column) {
    case 0:
      return row.proposalId;
    case 1:
      return row.reason;
    case 2:
      return row.taskTitle;
    case 3:
      return row.change;
    default:
      return {};
  }
}

void ReviewProposalListModel::setRows(std::vector<ProposalRowData> rows) {
  replaceRows(rows_, std::move(rows), &ProposalRowData::proposalId);
}

}  // namespace brindlet::ui

#include "ReviewProposalListModel.h"

#include <algorithm>

namespace brindlet::ui {

int ReviewProposalListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant ReviewProposalListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
    return {};
  }
  const ProposalRowData& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
    case ReasonRole:
      return row.reason;
    case ProposalIdRole:
      return row.proposalId;
    case TaskTitleRole:
      return row.taskTitle;
    case ChangeRole:
      return row.change;
    default:
      return {};
  }
}

QHash<int, QByteArray> ReviewProposalListModel::roleNames() const {
  return {
      {ProposalIdRole, "proposalId"},
      {ReasonRole, "reason"},
      {TaskTitleRole, "taskTitle"},
      {ChangeRole, "change"},
  };
}

void ReviewProposalListModel::setRows(std::vector<ProposalRowData> rows) {
  const bool sameProposals = std::ranges::equal(
      rows, rows_, [](const auto& a, const auto& b) { return a.proposalId == b.proposalId; });
  if (!sameProposals) {
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

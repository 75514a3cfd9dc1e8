#include "RowListModel.h"

namespace brindlet::ui {

RowListModel::RowListModel(QList<QByteArray> roles, QObject* parent)
    : QAbstractListModel(parent), roles_(std::move(roles)) {}

int RowListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant RowListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
    return {};
  }
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::DisplayRole) return field(row, 1);
  const int column = role - Qt::UserRole - 1;
  if (column < 0 || column >= roles_.size()) return {};
  return field(row, column);
}

QHash<int, QByteArray> RowListModel::roleNames() const {
  QHash<int, QByteArray> names;
  for (int column = 0; column < roles_.size(); ++column) {
    names.insert(Qt::UserRole + 1 + column, roles_[column]);
  }
  return names;
}

}  // namespace brindlet::ui

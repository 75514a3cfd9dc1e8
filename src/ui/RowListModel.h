#pragma once

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <QByteArray>
#include <QList>
#include <algorithm>
#include <cstddef>
#include <vector>

namespace brindlet::ui {

/// The common ground of the screens' lists: rows of ready-made values, one role for each field.
/// A new list of the same rows in the same order only changes the rows that differ, so a press
/// or a drag on a row survives the next heartbeat; any other list replaces the whole.
class RowListModel : public QAbstractListModel {
  Q_OBJECT
  // Known to QML only as the base of the lists, so that their count is typed there.
  QML_ANONYMOUS
  Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

 public:
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  [[nodiscard]] virtual int count() const = 0;

 signals:
  void countChanged();

 protected:
  /// `roles` names the fields in the order of the roles from Qt::UserRole + 1; the first field
  /// is the row's identity and the second what the row displays.
  RowListModel(QList<QByteArray> roles, QObject* parent);

  /// The field `column` of the row at `row`.
  [[nodiscard]] virtual QVariant field(std::size_t row, int column) const = 0;

  template <class Row, class Key>
  void replaceRows(std::vector<Row>& current, std::vector<Row> next, Key Row::*identity) {
    const bool sameRows = std::ranges::equal(next, current, [identity](const Row& a, const Row& b) {
      return a.*identity == b.*identity;
    });
    if (!sameRows) {
      const bool countChanges = next.size() != current.size();
      beginResetModel();
      current = std::move(next);
      endResetModel();
      if (countChanges) emit countChanged();
      return;
    }
    for (std::size_t i = 0; i < next.size(); ++i) {
      if (next[i] == current[i]) continue;
      current[i] = std::move(next[i]);
      const QModelIndex changed = index(static_cast<int>(i));
      emit dataChanged(changed, changed);
    }
  }

 private:
  QList<QByteArray> roles_;
};

}  // namespace brindlet::ui

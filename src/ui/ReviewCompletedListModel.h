#pragma once

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <QString>
#include <vector>

namespace brindlet::ui {

/// One task finished in the week under review.
struct CompletedRowData {
  QString taskId{};
  QString title{};
  QString elapsedText{};  // the task's focus time as a clock, "25:00"

  friend bool operator==(const CompletedRowData&, const CompletedRowData&) = default;
};

/// The tasks finished in the week under review, earliest first. A new list of the same tasks
/// only changes the rows that differ.
class ReviewCompletedListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Completed lists come from the review screen.")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  enum Role {
    TaskIdRole = Qt::UserRole + 1,
    TitleRole,
    ElapsedTextRole,
  };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<CompletedRowData>& rows() const { return rows_; }
  void setRows(std::vector<CompletedRowData> rows);

 signals:
  void countChanged();

 private:
  std::vector<CompletedRowData> rows_;
};

}  // namespace brindlet::ui

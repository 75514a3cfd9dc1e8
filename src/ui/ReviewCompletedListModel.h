#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <vector>

#include "RowListModel.h"

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
class ReviewCompletedListModel : public brindlet::ui::RowListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Completed lists come from the review screen.")

 public:
  enum Role {
    TaskIdRole = Qt::UserRole + 1,
    TitleRole,
    ElapsedTextRole,
  };

  explicit ReviewCompletedListModel(QObject* parent = nullptr);

  [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<CompletedRowData>& rows() const { return rows_; }
  void setRows(std::vector<CompletedRowData> rows);

 private:
  [[nodiscard]] QVariant field(std::size_t row, int column) const override;

  std::vector<CompletedRowData> rows_;
};

}  // namespace brindlet::ui

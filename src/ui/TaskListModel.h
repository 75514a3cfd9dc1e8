#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <vector>

#include "RowListModel.h"

namespace brindlet::ui {

/// One row of a task list as the Today screen shows it: every text already worked out.
struct TaskRowData {
  QString taskId{};
  QString title{};
  bool completed = false;
  QString priority{};       // raw value, "critical"
  QString priorityTitle{};  // "Critical"
  QString estimateText{};   // "25 min", or empty without an estimate
  QString focusedText{};    // "25m focused", for completed tasks
  bool hasReminder = false;

  friend bool operator==(const TaskRowData&, const TaskRowData&) = default;
};

/// The rows of the queue or of the completed group. A new list of the same tasks in the same
/// order only changes the rows that differ, so a drag in progress survives the next heartbeat.
class TaskListModel : public brindlet::ui::RowListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Task lists come from the dashboard.")

 public:
  enum Role {
    TaskIdRole = Qt::UserRole + 1,
    TitleRole,
    CompletedRole,
    PriorityRole,
    PriorityTitleRole,
    EstimateTextRole,
    FocusedTextRole,
    HasReminderRole,
  };

  explicit TaskListModel(QObject* parent = nullptr);

  [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<TaskRowData>& rows() const { return rows_; }
  void setRows(std::vector<TaskRowData> rows);

 private:
  [[nodiscard]] QVariant field(std::size_t row, int column) const override;

  std::vector<TaskRowData> rows_;
};

}  // namespace brindlet::ui

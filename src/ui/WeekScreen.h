#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <array>
#include <optional>

#include "ScreenModel.h"
#include "TaskListModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Week screen shows: the seven day columns of the selected week and the unscheduled
/// column, and the moves between them.
///
/// Columns are numbered from 0 to 7: Monday to Sunday of the selected week, then the unscheduled
/// column. Each column's cards come from a list model of its own that keeps its rows while the
/// same tasks stay in it, so a card being dragged survives the heartbeat's new states.
class WeekScreen : public brindlet::ui::ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  Q_PROPERTY(int columnCount READ columnCount CONSTANT)
  Q_PROPERTY(int unscheduledColumn READ unscheduledColumn CONSTANT)
  /// One entry per column: `title`, `subtitle`, `overloaded`, `isDay`, `openName`.
  Q_PROPERTY(QVariantList columns READ columns NOTIFY changed)
  /// The entries of each card's "Move" menu, in column order.
  Q_PROPERTY(QStringList moveTargets READ moveTargets NOTIFY changed)

 public:
  static constexpr int kDayCount = 7;
  static constexpr int kUnscheduled = kDayCount;
  static constexpr int kColumnCount = kDayCount + 1;

  explicit WeekScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static WeekScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);

  [[nodiscard]] int columnCount() const { return kColumnCount; }
  [[nodiscard]] int unscheduledColumn() const { return kUnscheduled; }
  [[nodiscard]] QVariantList columns() const;
  [[nodiscard]] QStringList moveTargets() const;

  /// The cards of a column, in the order they stand; null for a column that doesn't exist.
  Q_INVOKABLE brindlet::ui::TaskListModel* taskList(int column);

  /// Makes today the selected day, which brings its week on the board; the screen stays.
  Q_INVOKABLE void showToday();
  /// Selects the day of a day column and shows it on the Today screen.
  Q_INVOKABLE void openDay(int column);
  /// Plans the task on the column's day, behind the tasks already there, or unschedules it.
  Q_INVOKABLE void moveTask(const QString& taskId, int column);
  /// A drop of `text` on a column: true when it names a task and the move was started.
  Q_INVOKABLE bool dropOnColumn(const QString& text, int column);

 protected:
  void refresh() override;

 private:
  [[nodiscard]] std::optional<FocusTask> findTask(const QString& text) const;
  [[nodiscard]] std::optional<LocalDay> dayOf(int column) const;
  /// Starts the move of `task` to a column; false for a column that doesn't exist.
  bool startMove(const FocusTask& task, int column);

  std::array<TaskListModel, kColumnCount> lists_;
};

}  // namespace brindlet::ui

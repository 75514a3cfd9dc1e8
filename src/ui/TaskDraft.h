#pragma once

#include <QtQml/qqmlregistration.h>

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <vector>

#include "records/DomainGroup.h"
#include "records/FocusTask.h"
#include "support/Instant.h"

namespace brindlet::ui {

/// The editor's working copy of one task. Nothing reaches the stored task until the editor
/// saves, and cancelling simply drops the draft.
class TaskDraft : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("A draft is made by the dashboard when a task is opened.")
  Q_PROPERTY(QString taskId READ taskId CONSTANT FINAL)
  Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed FINAL)
  Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY changed FINAL)
  Q_PROPERTY(int priority READ priority WRITE setPriority NOTIFY changed FINAL)
  Q_PROPERTY(QStringList priorityTitles READ priorityTitles CONSTANT FINAL)
  Q_PROPERTY(QString estimateText READ estimateText NOTIFY changed FINAL)
  Q_PROPERTY(int actualMinutes READ actualMinutes NOTIFY changed FINAL)
  Q_PROPERTY(QString timeSpentText READ timeSpentText NOTIFY changed FINAL)
  Q_PROPERTY(bool hasStart READ hasStart WRITE setHasStart NOTIFY changed FINAL)
  Q_PROPERTY(QDateTime start READ start NOTIFY changed FINAL)
  Q_PROPERTY(QString startDateText READ startDateText NOTIFY changed FINAL)
  Q_PROPERTY(int startHour READ startHour WRITE setStartHour NOTIFY changed FINAL)
  Q_PROPERTY(int startMinute READ startMinute WRITE setStartMinute NOTIFY changed FINAL)
  Q_PROPERTY(bool reminderOn READ reminderOn WRITE setReminderOn NOTIFY changed FINAL)
  Q_PROPERTY(bool remindTenMinutesBefore READ remindTenMinutesBefore WRITE setRemindTenMinutesBefore
                 NOTIFY changed FINAL)
  Q_PROPERTY(
      bool remindWhenOverdue READ remindWhenOverdue WRITE setRemindWhenOverdue NOTIFY changed FINAL)
  Q_PROPERTY(QStringList groupNames READ groupNames CONSTANT FINAL)
  Q_PROPERTY(int groupIndex READ groupIndex WRITE setGroupIndex NOTIFY changed FINAL)
  Q_PROPERTY(bool canSave READ canSave NOTIFY changed FINAL)

 public:
  static constexpr std::int64_t kDefaultEstimate = 25;

  /// A draft of `task`; `openedAt` is the start offered when the task has none.
  TaskDraft(FocusTask task, std::vector<DomainGroup> groups, Instant openedAt,
            QObject* parent = nullptr);

  [[nodiscard]] QString taskId() const;
  [[nodiscard]] QString title() const;
  void setTitle(const QString& title);
  [[nodiscard]] QString notes() const;
  void setNotes(const QString& notes);
  [[nodiscard]] int priority() const;
  void setPriority(int index);
  [[nodiscard]] QStringList priorityTitles() const;
  [[nodiscard]] QString estimateText() const;
  /// One press of the estimate stepper: up when `direction` is positive.
  Q_INVOKABLE void stepEstimate(int direction);
  [[nodiscard]] int actualMinutes() const { return static_cast<int>(actualMinutes_); }
  [[nodiscard]] QString timeSpentText() const;
  Q_INVOKABLE void stepActualMinutes(int direction);
  [[nodiscard]] bool hasStart() const { return hasStart_; }
  void setHasStart(bool hasStart);
  [[nodiscard]] QDateTime start() const;
  [[nodiscard]] Instant startInstant() const { return start_; }
  [[nodiscard]] QString startDateText() const;
  [[nodiscard]] int startHour() const;
  void setStartHour(int hour);
  [[nodiscard]] int startMinute() const;
  void setStartMinute(int minute);
  /// Moves the start by whole days, keeping its time of day.
  Q_INVOKABLE void shiftStartDays(int days);
  [[nodiscard]] bool reminderOn() const;
  void setReminderOn(bool on);
  [[nodiscard]] bool remindTenMinutesBefore() const;
  void setRemindTenMinutesBefore(bool on);
  [[nodiscard]] bool remindWhenOverdue() const;
  void setRemindWhenOverdue(bool on);
  [[nodiscard]] QStringList groupNames() const;
  [[nodiscard]] int groupIndex() const;
  void setGroupIndex(int index);
  [[nodiscard]] bool canSave() const;

  /// The working copy as it stands, without the schedule and time spent folded in.
  [[nodiscard]] const FocusTask& task() const { return task_; }
  /// The task that "Save" hands on: the start and the time spent put into it.
  [[nodiscard]] FocusTask finishedTask() const;

 signals:
  void changed();

 private:
  void setStart(const QDateTime& start);

  FocusTask task_;
  std::vector<DomainGroup> groups_;
  bool hasStart_ = false;
  Instant start_;
  std::int64_t actualMinutes_ = 0;
};

}  // namespace brindlet::ui

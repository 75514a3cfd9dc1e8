#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <optional>

#include "ModelHost.h"
#include "TaskDraft.h"
#include "TaskListModel.h"
#include "support/Clock.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the main window shows and what its controls do, for QML. It reads the state that the
/// host hands over and turns every control into a job for the model; it never waits for one.
/// The view state that belongs to the window alone (the destination, the open editor) lives here.
class Dashboard : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  // ---- shell ----
  Q_PROPERTY(QString navigationTitle READ navigationTitle CONSTANT)
  Q_PROPERTY(QStringList destinationTitles READ destinationTitles CONSTANT)
  Q_PROPERTY(QStringList destinationSymbols READ destinationSymbols CONSTANT)
  Q_PROPERTY(int destination READ destination WRITE setDestination NOTIFY destinationChanged)
  Q_PROPERTY(bool alertShown READ alertShown NOTIFY changed)
  Q_PROPERTY(QString alertText READ alertText NOTIFY changed)
  Q_PROPERTY(QString footerState READ footerState NOTIFY changed)
  Q_PROPERTY(QString footerCaption READ footerCaption NOTIFY changed)
  Q_PROPERTY(QString protectionError READ protectionError NOTIFY changed)
  Q_PROPERTY(brindlet::ui::TaskDraft* draft READ draft NOTIFY draftChanged)

  // ---- Today ----
  Q_PROPERTY(QString dayTitle READ dayTitle NOTIFY changed)
  Q_PROPERTY(QString workloadText READ workloadText NOTIFY changed)
  // The week strip, Monday first: each day's label, its count of open tasks and the name a screen
  // reader gives it, and which of the seven is the day on show (-1 for none).
  Q_PROPERTY(QStringList weekDayLabels READ weekDayLabels NOTIFY changed)
  Q_PROPERTY(QStringList weekDayCounts READ weekDayCounts NOTIFY changed)
  Q_PROPERTY(QStringList weekDayNames READ weekDayNames NOTIFY changed)
  Q_PROPERTY(int selectedWeekDay READ selectedWeekDay NOTIFY changed)
  Q_PROPERTY(bool planRead READ planRead NOTIFY changed)
  Q_PROPERTY(bool hasCardTask READ hasCardTask NOTIFY changed)
  Q_PROPERTY(QString cardStatus READ cardStatus NOTIFY changed)
  Q_PROPERTY(QString cardLabel READ cardLabel NOTIFY changed)
  Q_PROPERTY(QString cardSymbol READ cardSymbol NOTIFY changed)
  Q_PROPERTY(QString cardTitle READ cardTitle NOTIFY changed)
  Q_PROPERTY(QString cardPriority READ cardPriority NOTIFY changed)
  Q_PROPERTY(QString cardEstimateText READ cardEstimateText NOTIFY changed)
  Q_PROPERTY(QString cardElapsedText READ cardElapsedText NOTIFY changed)
  Q_PROPERTY(QString quickTitle READ quickTitle WRITE setQuickTitle NOTIFY quickTitleChanged)
  Q_PROPERTY(bool canAdd READ canAdd NOTIFY quickTitleChanged)
  Q_PROPERTY(brindlet::ui::TaskListModel* queue READ queue CONSTANT)
  Q_PROPERTY(brindlet::ui::TaskListModel* completed READ completed CONSTANT)
  Q_PROPERTY(QString reminderWarning READ reminderWarning NOTIFY changed)

 public:
  Dashboard(ModelHost& host, std::shared_ptr<const Clock> clock, QObject* parent = nullptr);
  ~Dashboard() override;

  /// The one dashboard that QML sees; it must exist before the QML module is loaded.
  static Dashboard* create(QQmlEngine* engine, QJSEngine* scriptEngine);
  [[nodiscard]] static Dashboard* instance();

  /// Shows a state as if the model had just published it.
  void present(const AppModelState& state);
  [[nodiscard]] const AppModelState& shownState() const { return state_; }
  [[nodiscard]] ModelHost& host() const { return host_; }

  [[nodiscard]] QString navigationTitle() const;
  [[nodiscard]] QStringList destinationTitles() const;
  [[nodiscard]] QStringList destinationSymbols() const;
  /// The index of the selected destination, or -1 when the selection was cleared.
  [[nodiscard]] int destination() const { return destination_; }
  void setDestination(int destination);
  [[nodiscard]] bool alertShown() const;
  [[nodiscard]] QString alertText() const;
  [[nodiscard]] QString footerState() const;
  [[nodiscard]] QString footerCaption() const;
  [[nodiscard]] QString protectionError() const;
  [[nodiscard]] TaskDraft* draft() const { return draft_; }

  [[nodiscard]] QString dayTitle() const;
  [[nodiscard]] QString workloadText() const;
  [[nodiscard]] QStringList weekDayLabels() const { return weekStrip().labels; }
  [[nodiscard]] QStringList weekDayCounts() const { return weekStrip().counts; }
  [[nodiscard]] QStringList weekDayNames() const { return weekStrip().names; }
  [[nodiscard]] int selectedWeekDay() const { return weekStrip().selected; }
  /// False only while the model has yet to read the plan, which a slow disk can hold up.
  [[nodiscard]] bool planRead() const { return host_.hasModelState(); }
  [[nodiscard]] bool hasCardTask() const { return cardTask().has_value(); }
  [[nodiscard]] QString cardStatus() const;
  [[nodiscard]] QString cardLabel() const;
  [[nodiscard]] QString cardSymbol() const;
  [[nodiscard]] QString cardTitle() const;
  [[nodiscard]] QString cardPriority() const;
  [[nodiscard]] QString cardEstimateText() const;
  [[nodiscard]] QString cardElapsedText() const;
  [[nodiscard]] QString quickTitle() const { return quickTitle_; }
  void setQuickTitle(const QString& title);
  [[nodiscard]] bool canAdd() const { return !quickTitle_.trimmed().isEmpty(); }
  [[nodiscard]] TaskListModel* queue() { return &queue_; }
  [[nodiscard]] TaskListModel* completed() { return &completed_; }
  [[nodiscard]] QString reminderWarning() const;

  // ---- shell controls ----
  Q_INVOKABLE void setWindowShown(bool shown);
  Q_INVOKABLE void dismissAlert();
  Q_INVOKABLE void retryProtection();
  Q_INVOKABLE void cancelEditor();
  Q_INVOKABLE void saveEditor();

  // ---- Today controls ----
  Q_INVOKABLE void selectDay(int index);
  Q_INVOKABLE void addTask();
  Q_INVOKABLE void startCardTask();
  Q_INVOKABLE void pauseActiveTask();
  Q_INVOKABLE void resumeCardTask();
  Q_INVOKABLE void completeCardTask();
  Q_INVOKABLE void skipActiveTask();
  Q_INVOKABLE void completeTask(const QString& taskId);
  Q_INVOKABLE void editTask(const QString& taskId);
  /// A drop of `text` on the row of `targetId`: true when it was taken and the reorder started.
  Q_INVOKABLE bool dropOnRow(const QString& text, const QString& targetId);

 signals:
  void changed();
  void destinationChanged();
  void quickTitleChanged();
  void draftChanged();

 private:
  struct WeekStrip {
    QStringList labels;
    QStringList counts;
    QStringList names;
    int selected = -1;
  };

  [[nodiscard]] const WeekStrip& weekStrip() const;
  [[nodiscard]] std::optional<FocusTask> cardTask() const;
  [[nodiscard]] std::optional<FocusTask> findTask(const QString& taskId) const;
  void openEditor(const FocusTask& task);
  void closeEditor();
  void refreshLists();
  void onHostStateChanged();

  ModelHost& host_;
  std::shared_ptr<const Clock> clock_;
  AppModelState state_;
  int destination_ = 0;
  QString quickTitle_;
  std::uint64_t quickTitleSequence_ = 0;
  std::uint64_t alertDismissSequence_ = 0;
  QPointer<TaskDraft> draft_;
  // Each of the week strip's seven days reads the whole week; it is made once per state.
  mutable std::optional<WeekStrip> weekStrip_;
  TaskListModel queue_;
  TaskListModel completed_;
};

}  // namespace brindlet::ui

#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <optional>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Data Safety screen shows: the backup status, and the daily copy, export and restore.
/// A file chosen for restoring waits here until the user confirms or dismisses the question; it
/// is forgotten when the screen goes away.
class DataSafetyScreen : public brindlet::ui::ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  Q_PROPERTY(QString backupStatus READ backupStatus NOTIFY changed)
  Q_PROPERTY(bool restorePending READ restorePending NOTIFY restorePendingChanged)

 public:
  /// What the panels offer: backups are plain JSON files.
  static inline const QString kBackupFilter = QStringLiteral("JSON (*.json)");
  static inline const QString kSuggestedExportName = QStringLiteral("Brindlet Backup.json");

  explicit DataSafetyScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static DataSafetyScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);

  [[nodiscard]] QString backupStatus() const;
  /// A file is chosen for restoring and waits for the user's confirmation.
  [[nodiscard]] bool restorePending() const { return restoreFile_.has_value(); }

  /// Takes today's copy, unless the day has one already.
  Q_INVOKABLE void backUpNow();
  /// Asks where to write a full copy, then writes it there; a cancelled panel does nothing.
  Q_INVOKABLE void exportBackup();
  /// Asks for the file to restore from and keeps it for the confirmation.
  Q_INVOKABLE void chooseRestore();
  /// Restores from the chosen file, forgetting it first.
  Q_INVOKABLE void confirmRestore();
  /// Forgets the chosen file: the confirmation was cancelled or dismissed, or the screen left.
  Q_INVOKABLE void cancelRestore();

 signals:
  void restorePendingChanged();

 private:
  void setRestoreFile(std::optional<QString> file);

  std::optional<QString> restoreFile_;
};

}  // namespace brindlet::ui

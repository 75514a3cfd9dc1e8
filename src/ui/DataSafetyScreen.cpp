#include "DataSafetyScreen.h"

#include <QFile>
#include <filesystem>

#include "FilePanels.h"
#include "app/AppModel.h"

namespace brindlet::ui {
namespace {

std::filesystem::path toPath(const QString& file) {
  return std::filesystem::path(QFile::encodeName(file).toStdString());
}

}  // namespace

DataSafetyScreen::DataSafetyScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {}

DataSafetyScreen* DataSafetyScreen::create(QQmlEngine*, QJSEngine*) {
  return new DataSafetyScreen(*Dashboard::instance());
}

QString DataSafetyScreen::backupStatus() const {
  return QString::fromStdString(state().backupStatus);
}

void DataSafetyScreen::backUpNow() {
  post([](AppModel& model) { model.createDailyBackup(); });
}

void DataSafetyScreen::exportBackup() {
  const std::optional<QString> destination =
      FilePanels::current().chooseSaveLocation(kSuggestedExportName, kBackupFilter);
  if (!destination) return;
  post([path = toPath(*destination)](AppModel& model) { model.exportBackup(path); });
}

void DataSafetyScreen::chooseRestore() {
  std::optional<QString> source = FilePanels::current().chooseFileToOpen(kBackupFilter);
  if (!source) return;
  setRestoreFile(std::move(source));
}

void DataSafetyScreen::confirmRestore() {
  const std::optional<QString> source = restoreFile_;
  setRestoreFile(std::nullopt);
  if (!source) return;
  // The file is read only now, by the model: a file that is no usable backup is refused there,
  // and the alert says why.
  post([path = toPath(*source)](AppModel& model) { model.restoreBackup(path); });
}

void DataSafetyScreen::cancelRestore() { setRestoreFile(std::nullopt); }

void DataSafetyScreen::setRestoreFile(std::optional<QString> file) {
  if (file == restoreFile_) return;
  restoreFile_ = std::move(file);
  emit restorePendingChanged();
}

}  // namespace brindlet::ui

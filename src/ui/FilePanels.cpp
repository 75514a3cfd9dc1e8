#include "FilePanels.h"

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QWindow>

namespace brindlet::ui {
namespace {

std::shared_ptr<FilePanels>& installed() {
  static std::shared_ptr<FilePanels> panels = std::make_shared<SystemFilePanels>();
  return panels;
}

/// Runs the dialog modally over the focused window; the one selected file, or nothing.
std::optional<QString> run(QFileDialog& dialog) {
  dialog.setWindowModality(Qt::ApplicationModal);
  // The windows of the app are Qt Quick windows, not widgets: the dialog can only be tied to
  // one through its native window.
  if (QWindow* owner = QGuiApplication::focusWindow()) {
    dialog.winId();
    if (QWindow* handle = dialog.windowHandle()) handle->setTransientParent(owner);
  }
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QStringList chosen = dialog.selectedFiles();
  if (chosen.isEmpty() || chosen.constFirst().isEmpty()) return std::nullopt;
  return chosen.constFirst();
}

/// The extension of the filter's first pattern, "json" for "JSON (*.json)"; empty for none.
QString suffixOf(const QString& filter) {
  static const QRegularExpression pattern(QStringLiteral(R"(\*\.(\w+))"));
  return pattern.match(filter).captured(1);
}

}  // namespace

FilePanels& FilePanels::current() { return *installed(); }

std::shared_ptr<FilePanels> FilePanels::install(std::shared_ptr<FilePanels> panels) {
  if (!panels) panels = std::make_shared<SystemFilePanels>();
  std::swap(installed(), panels);
  return panels;
}

std::unique_ptr<QFileDialog> SystemFilePanels::makeSaveDialog(const QString& suggestedName,
                                                              const QString& filter) {
  auto dialog = std::make_unique<QFileDialog>();
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setNameFilter(filter);
  dialog->setDefaultSuffix(suffixOf(filter));
  dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  dialog->selectFile(suggestedName);
  return dialog;
}

std::unique_ptr<QFileDialog> SystemFilePanels::makeOpenDialog(const QString& filter) {
  auto dialog = std::make_unique<QFileDialog>();
  dialog->setAcceptMode(QFileDialog::AcceptOpen);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilter(filter);
  dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  return dialog;
}

std::optional<QString> SystemFilePanels::chooseSaveLocation(const QString& suggestedName,
                                                            const QString& filter) {
  const std::unique_ptr<QFileDialog> dialog = makeSaveDialog(suggestedName, filter);
  return run(*dialog);
}

std::optional<QString> SystemFilePanels::chooseFileToOpen(const QString& filter) {
  const std::unique_ptr<QFileDialog> dialog = makeOpenDialog(filter);
  return run(*dialog);
}

}  // namespace brindlet::ui

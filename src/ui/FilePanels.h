#pragma once

#include <QString>
#include <memory>
#include <optional>

class QFileDialog;

namespace brindlet::ui {

/// The modal file choosers that the screens ask where to write a file or which one to read.
/// Either answers with the chosen file's path, or with nothing when the user cancelled.
class FilePanels {
 public:
  virtual ~FilePanels() = default;

  /// Asks where to save, offering `suggestedName` and only files that match `filter` (a name
  /// filter such as "JSON (*.json)"). Replacing an existing file is the panel's own question.
  [[nodiscard]] virtual std::optional<QString> chooseSaveLocation(const QString& suggestedName,
                                                                  const QString& filter) = 0;
  /// Asks for one existing file that matches `filter`.
  [[nodiscard]] virtual std::optional<QString> chooseFileToOpen(const QString& filter) = 0;

  /// The panels in use: the desktop's own unless others were installed.
  [[nodiscard]] static FilePanels& current();
  /// Puts `panels` in place of the ones in use and returns those; null brings back the desktop's
  /// own. Tests install stand-ins this way, so that no real dialog ever opens under them.
  static std::shared_ptr<FilePanels> install(std::shared_ptr<FilePanels> panels);
};

/// The desktop's file dialogs, each modal over the window that has the focus.
class SystemFilePanels : public FilePanels {
 public:
  [[nodiscard]] std::optional<QString> chooseSaveLocation(const QString& suggestedName,
                                                          const QString& filter) override;
  [[nodiscard]] std::optional<QString> chooseFileToOpen(const QString& filter) override;

  /// The save dialog as it will be shown, not yet open: in the documents folder, with the
  /// suggested name filled in and the filter as the only choice.
  [[nodiscard]] static std::unique_ptr<QFileDialog> makeSaveDialog(const QString& suggestedName,
                                                                   const QString& filter);
  /// The open dialog as it will be shown: one existing file, the filter as the only choice.
  [[nodiscard]] static std::unique_ptr<QFileDialog> makeOpenDialog(const QString& filter);
};

}  // namespace brindlet::ui

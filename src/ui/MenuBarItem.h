#pragma once

#include <QMenu>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "ModelHost.h"

class QSystemTrayIcon;

namespace brindlet::ui {

/// The system-tray item: an icon whose tooltip carries the label text, and the pull-down menu.
/// The menu is rebuilt from each published state, so it always reads as the model stands.
/// Where the desktop has no tray, the menu still exists but nothing shows it.
class MenuBarItem : public QObject {
  Q_OBJECT

 public:
  explicit MenuBarItem(ModelHost& host, QObject* parent = nullptr);
  ~MenuBarItem() override;

  /// Shows the icon in the tray, when the desktop has one; false otherwise.
  bool show();

  [[nodiscard]] QMenu& menu() { return menu_; }
  /// The text beside the icon, empty when there is none.
  [[nodiscard]] QString labelText() const { return labelText_; }
  [[nodiscard]] QString iconSymbol() const { return iconSymbol_; }
  /// The menu entries from the top: their texts, "---" for a separator, and a leading "·" for
  /// a line that can't be chosen.
  [[nodiscard]] QStringList entries() const;

 signals:
  /// "Open Brindlet" was chosen.
  void openRequested();

 private:
  void rebuild();

  ModelHost& host_;
  QMenu menu_;
  std::unique_ptr<QSystemTrayIcon> tray_;
  QString labelText_;
  QString iconSymbol_;
};

}  // namespace brindlet::ui

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "ModelHost.h"

class QMenu;
class QSystemTrayIcon;

namespace brindlet::ui {

/// The system-tray item: an icon whose tooltip carries the label text, and the pull-down menu.
/// The menu's entries are rebuilt from each published state, so they always read as the model
/// stands. The menu itself is made only once something shows it: where the desktop has no tray,
/// the app carries no menu and no widget style.
class MenuBarItem : public QObject {
  Q_OBJECT

 public:
  explicit MenuBarItem(ModelHost& host, QObject* parent = nullptr);
  ~MenuBarItem() override;

  /// Shows the icon in the tray, when the desktop has one; false otherwise.
  bool show();

  /// The pull-down menu, made the first time it is asked for.
  [[nodiscard]] QMenu& menu();
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
  /// One entry of the menu: a choice, a line that can't be chosen (no `choose`), or a separator.
  struct Entry {
    QString text{};
    std::function<void()> choose{};
    bool heading = false;
    bool separator = false;
  };

  void rebuild();
  [[nodiscard]] std::vector<Entry> entriesFor(const AppModelState& state);
  /// The entries of the active task and the protection, as `state` has them.
  void appendPlanEntries(std::vector<Entry>& entries, const AppModelState& state);
  void fill(QMenu& menu) const;

  ModelHost& host_;
  std::vector<Entry> entries_;
  // Before the tray icon, which shows the menu and so must go first.
  std::unique_ptr<QMenu> menu_;
  std::unique_ptr<QSystemTrayIcon> tray_;
  QString labelText_;
  QString iconSymbol_;
};

}  // namespace brindlet::ui

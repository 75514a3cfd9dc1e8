#include "MenuBarItem.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include "UiTexts.h"

namespace brindlet::ui {
namespace {

QIcon iconFor(const QString& symbol) { return QIcon(QStringLiteral(":/icons/%1.svg").arg(symbol)); }

}  // namespace

MenuBarItem::MenuBarItem(ModelHost& host, QObject* parent) : QObject(parent), host_(host) {
  connect(&host_, &ModelHost::stateChanged, this, &MenuBarItem::rebuild);
  rebuild();
}

MenuBarItem::~MenuBarItem() = default;

bool MenuBarItem::show() {
  if (!QSystemTrayIcon::isSystemTrayAvailable()) return false;
  tray_ = std::make_unique<QSystemTrayIcon>(iconFor(iconSymbol_));
  tray_->setContextMenu(&menu());
  connect(tray_.get(), &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger) emit openRequested();
          });
  rebuild();
  tray_->show();
  return true;
}

QMenu& MenuBarItem::menu() {
  if (!menu_) {
    menu_ = std::make_unique<QMenu>();
    fill(*menu_);
  }
  return *menu_;
}

QStringList MenuBarItem::entries() const {
  QStringList texts;
  for (const Entry& entry : entries_) {
    if (entry.separator) {
      texts << QStringLiteral("---");
    } else {
      texts << (entry.choose ? QString() : QStringLiteral("·")) + entry.text;
    }
  }
  return texts;
}

void MenuBarItem::rebuild() {
  const AppModelState& state = host_.state();
  const std::optional<std::string> label = menuBarLabel(state);
  labelText_ = label ? qs(*label) : QString();
  iconSymbol_ = qs(menuBarSymbol(state));
  if (tray_) {
    tray_->setIcon(iconFor(iconSymbol_));
    tray_->setToolTip(labelText_.isEmpty() ? QStringLiteral("Brindlet")
                                           : QStringLiteral("Brindlet  %1").arg(labelText_));
  }
  entries_ = entriesFor(state);
  if (menu_) fill(*menu_);
}

std::vector<MenuBarItem::Entry> MenuBarItem::entriesFor(const AppModelState& state) {
  const Entry separator{.separator = true};
  std::vector<Entry> entries{
      {.text = QStringLiteral("Open Brindlet"), .choose = [this] { emit openRequested(); }},
      separator};
  // Until the plan is read, the menu claims nothing about the task or the protection.
  if (host_.hasModelState()) {
    appendPlanEntries(entries, state);
    entries.push_back(separator);
  }
  // Queued, so that the menu has closed before the app starts to end.
  entries.push_back({.text = QStringLiteral("Quit"), .choose = [] {
                       QMetaObject::invokeMethod(qApp, &QCoreApplication::quit,
                                                 Qt::QueuedConnection);
                     }});
  return entries;
}

void MenuBarItem::appendPlanEntries(std::vector<Entry>& entries, const AppModelState& state) {
  const Entry separator{.separator = true};
  if (const std::optional<FocusTask> task = state.activeTask()) {
    entries.push_back({.text = qs(task->title), .heading = true});
    entries.push_back({.text = QStringLiteral("%1 focused").arg(qs(state.elapsedText(*task)))});
    if (task->status == TaskStatus::active) {
      entries.push_back({.text = QStringLiteral("Pause Task"), .choose = [this] {
                           host_.post([](AppModel& model) { model.pauseActiveTask(); });
                         }});
      entries.push_back({.text = QStringLiteral("Complete Task"), .choose = [this, task = *task] {
                           host_.post([task](AppModel& model) { model.completeTask(task); });
                         }});
    } else if (task->status == TaskStatus::paused) {
      entries.push_back({.text = QStringLiteral("Resume Task"), .choose = [this, task = *task] {
                           host_.post([task](AppModel& model) { model.resumeTask(task); });
                         }});
    }
    entries.push_back(separator);
  }

  if (!state.activeSession) {
    entries.push_back({.text = QStringLiteral("Protection Off")});
  } else {
    entries.push_back({.text = QStringLiteral("%1 remaining").arg(qs(state.countdown()))});
    const bool flexible = state.activeSession->mode == SessionMode::flexible;
    entries.push_back(
        {.text = flexible ? QStringLiteral("Flexible mode") : QStringLiteral("Strict mode")});
    if (flexible) {
      entries.push_back({.text = QStringLiteral("End Session"), .choose = [this] {
                           host_.post([](AppModel& model) { model.endFlexible(); });
                         }});
    }
  }
}

void MenuBarItem::fill(QMenu& menu) const {
  menu.clear();
  for (const Entry& entry : entries_) {
    if (entry.separator) {
      menu.addSeparator();
      continue;
    }
    QAction* action = menu.addAction(entry.text);
    if (entry.choose) {
      connect(action, &QAction::triggered, action, entry.choose);
    } else {
      action->setEnabled(false);
    }
    if (entry.heading) {
      QFont bold = action->font();
      bold.setBold(true);
      action->setFont(bold);
    }
  }
}

}  // namespace brindlet::ui

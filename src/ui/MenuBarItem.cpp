#include "MenuBarItem.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QSystemTrayIcon>

#include "UiTexts.h"

namespace brindlet::ui {
namespace {

QAction* addLine(QMenu& menu, const QString& text) {
  QAction* line = menu.addAction(text);
  line->setEnabled(false);
  return line;
}

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
  tray_->setContextMenu(&menu_);
  connect(tray_.get(), &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger) emit openRequested();
          });
  rebuild();
  tray_->show();
  return true;
}

QStringList MenuBarItem::entries() const {
  QStringList texts;
  for (const QAction* action : menu_.actions()) {
    if (action->isSeparator()) {
      texts << QStringLiteral("---");
    } else {
      texts << (action->isEnabled() ? QString() : QStringLiteral("·")) + action->text();
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

  menu_.clear();
  connect(menu_.addAction(QStringLiteral("Open Brindlet")), &QAction::triggered, this,
          &MenuBarItem::openRequested);
  menu_.addSeparator();

  if (const std::optional<FocusTask> task = state.activeTask()) {
    QAction* heading = addLine(menu_, qs(task->title));
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    addLine(menu_, QStringLiteral("%1 focused").arg(qs(state.elapsedText(*task))));
    if (task->status == TaskStatus::active) {
      connect(menu_.addAction(QStringLiteral("Pause Task")), &QAction::triggered, this,
              [this] { host_.post([](AppModel& model) { model.pauseActiveTask(); }); });
      connect(menu_.addAction(QStringLiteral("Complete Task")), &QAction::triggered, this,
              [this, task = *task] {
                host_.post([task](AppModel& model) { model.completeTask(task); });
              });
    } else if (task->status == TaskStatus::paused) {
      connect(menu_.addAction(QStringLiteral("Resume Task")), &QAction::triggered, this,
              [this, task = *task] {
                host_.post([task](AppModel& model) { model.resumeTask(task); });
              });
    }
    menu_.addSeparator();
  }

  if (!state.activeSession) {
    addLine(menu_, QStringLiteral("Protection Off"));
  } else {
    addLine(menu_, QStringLiteral("%1 remaining").arg(qs(state.countdown())));
    const bool flexible = state.activeSession->mode == SessionMode::flexible;
    addLine(menu_, flexible ? QStringLiteral("Flexible mode") : QStringLiteral("Strict mode"));
    if (flexible) {
      connect(menu_.addAction(QStringLiteral("End Session")), &QAction::triggered, this,
              [this] { host_.post([](AppModel& model) { model.endFlexible(); }); });
    }
  }
  menu_.addSeparator();
  connect(menu_.addAction(QStringLiteral("Quit")), &QAction::triggered, qApp,
          &QCoreApplication::quit, Qt::QueuedConnection);
}

}  // namespace brindlet::ui

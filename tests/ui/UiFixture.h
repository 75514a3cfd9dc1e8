#pragma once

#include <gtest/gtest.h>

#include <QPointF>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Builders.h"
#include "Dashboard.h"
#include "FakePrivilegedRunner.h"
#include "ManualClock.h"
#include "MenuBarItem.h"
#include "ModelHost.h"
#include "RecordingReminderScheduler.h"
#include "TempDir.h"
#include "app/PlatformFolders.h"
#include "persistence/PersistedState.h"
#include "support/Calendar.h"

/// Lets failures print texts as texts.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace brindlet::testing {

/// The day of kTestNow in UTC, a Saturday; its week starts on Monday the 16th.
inline constexpr LocalDay kSaturday{2026, 11, 21};
inline constexpr LocalDay kTuesday{2026, 11, 17};
inline constexpr LocalDay kThursday{2026, 11, 19};

/// The name a screen reader gives `target`; empty for no item.
[[nodiscard]] QString accessibleName(QQuickItem* target);

/// The whole application over a temporary folder: a model composed over stand-in folders, a
/// hosts file, a runner without privileges, a recording notification service and a clock that
/// moves only when told; the host, the dashboard, the tray menu and the real main window.
class UiTest : public ::testing::Test {
 protected:
  UiTest();
  ~UiTest() override;

  /// Writes the document with these tasks, composes the model and opens the main window.
  void launch(const std::vector<FocusTask>& tasks = {});
  /// Opens the main window and the tray menu over the model `makeModel` makes on the model
  /// thread, and waits until the window is on screen, but not for the model.
  void openWindow(ui::ModelHost::ModelFactory makeModel);
  /// What the model is composed of: the fixture's folders, hosts file, runner, clock and calendar.
  [[nodiscard]] AppModel::Composition composition() const;
  /// Runs the jobs posted so far and brings the window up to date with what they published.
  void settle();
  /// Lets the window lay itself out and draw a frame, so that positions are final.
  void frame();

  /// The visible item with this object name, anywhere in the window; null when none.
  [[nodiscard]] QQuickItem* item(const QString& objectName) const;
  /// The visible button that reads `text`; fails the test when there is none.
  [[nodiscard]] QQuickItem* button(const QString& text) const;
  /// The visible items whose `text` is exactly `text`.
  [[nodiscard]] std::vector<QQuickItem*> texts(const QString& text) const;
  [[nodiscard]] bool showsText(const QString& text) const { return !texts(text).empty(); }
  /// The texts of the visible buttons inside `container`, in tree order.
  [[nodiscard]] std::vector<QString> buttonsIn(QQuickItem* container) const;
  /// The queue's row titles in order, completed group excluded.
  [[nodiscard]] std::vector<QString> queueTitles() const;

  void click(QQuickItem* target, Qt::KeyboardModifiers modifiers = {});
  void clickButton(const QString& text) { click(button(text)); }
  /// Presses on `from`, moves in steps onto `to` and releases there.
  void drag(QQuickItem* from, QQuickItem* to);
  void type(const QString& text);
  void pressKey(Qt::Key key);
  [[nodiscard]] QPointF centreOf(QQuickItem* target) const;

  /// Writes the window to build/screenshots/{name}.png.
  void screenshot(const QString& name);

  [[nodiscard]] PersistedState stored() const;
  [[nodiscard]] std::optional<FocusTask> storedTask(const Uuid& id) const;
  /// Runs a job on the model thread and waits for its result to be on show.
  void onModel(const ui::ModelHost::Job& job);

  TempDir folder;
  PlatformFolders folders{.applicationSupport = folder / "Application Support",
                          .documents = folder / "Documents"};
  std::filesystem::path hostsPath = folder / "hosts";
  std::shared_ptr<FakePrivilegedRunner> runner = std::make_shared<FakePrivilegedRunner>();
  std::shared_ptr<RecordingReminderScheduler> scheduler =
      std::make_shared<RecordingReminderScheduler>();
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  Calendar calendar{"UTC", Calendar::kMonday, "en_US"};

  std::unique_ptr<ui::ModelHost> host;
  std::unique_ptr<ui::Dashboard> dashboard;
  std::unique_ptr<ui::MenuBarItem> menuBar;
  std::unique_ptr<QQmlApplicationEngine> engine;
  QQuickWindow* window = nullptr;
};

}  // namespace brindlet::testing

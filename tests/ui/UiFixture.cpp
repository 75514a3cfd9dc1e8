#include "UiFixture.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QTest>
#include <utility>

#include "MainWindowLoad.h"
#include "SessionFixture.h"
#include "app/AppModel.h"
#include "persistence/LocalStore.h"

namespace brindlet::testing {
namespace {

void collect(QQuickItem* root, const std::function<bool(QQuickItem*)>& wanted,
             std::vector<QQuickItem*>& found) {
  if (!root || !root->isVisible()) return;
  if (wanted(root)) found.push_back(root);
  for (QQuickItem* child : root->childItems()) collect(child, wanted, found);
}

bool isButton(const QQuickItem* candidate) {
  return candidate->metaObject()->indexOfSignal("clicked()") >= 0;
}

}  // namespace

QString accessibleName(QQuickItem* target) {
  QAccessibleInterface* element = QAccessible::queryAccessibleInterface(target);
  return element ? element->text(QAccessible::Name) : QString();
}

UiTest::UiTest() { writeBytes(hostsPath, kPlainHosts); }

UiTest::~UiTest() {
  engine.reset();
  menuBar.reset();
  dashboard.reset();
  host.reset();
}

void UiTest::launch(const std::vector<FocusTask>& tasks) {
  PersistedState state = PersistedState::initial();
  state.tasks = tasks;
  LocalStore(folders.stateFile()).save(state);

  // As in the app, the model is composed on its own thread while the window loads.
  openWindow([this] { return AppModel::compose(composition()); });
  settle();
}

void UiTest::openWindow(ui::ModelHost::ModelFactory makeModel) {
  host = std::make_unique<ui::ModelHost>(std::move(makeModel));
  // The heartbeat is the tests' to give; a real second never passes here.
  host->setHeartbeatInterval(std::chrono::hours(1));
  dashboard = std::make_unique<ui::Dashboard>(*host, clock);
  menuBar = std::make_unique<ui::MenuBarItem>(*host);
  engine = std::make_unique<QQmlApplicationEngine>();
  window = ui::loadMainWindow(*engine);
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
}

AppModel::Composition UiTest::composition() const {
  return AppModel::Composition{
      .folders = folders,
      .hostsPath = hostsPath,
      .runner = runner,
      .scheduler = scheduler,
      .clock = clock,
      .calendar = calendar,
  };
}

void UiTest::settle() {
  // Twice: a job may post the window's next job as it publishes, as the alert's dismissal does.
  for (int pass = 0; pass < 2; ++pass) {
    host->settle();
    QCoreApplication::processEvents();
  }
  frame();
}

void UiTest::frame() {
  QCoreApplication::processEvents();
  (void)window->grabWindow();
}

QQuickItem* UiTest::item(const QString& objectName) const {
  std::vector<QQuickItem*> found;
  collect(
      window->contentItem(),
      [&](QQuickItem* candidate) { return candidate->objectName() == objectName; }, found);
  return found.empty() ? nullptr : found.front();
}

std::vector<QQuickItem*> UiTest::texts(const QString& text) const {
  std::vector<QQuickItem*> found;
  collect(
      window->contentItem(),
      [&](QQuickItem* candidate) { return candidate->property("text").toString() == text; }, found);
  return found;
}

QQuickItem* UiTest::button(const QString& text) const {
  std::vector<QQuickItem*> found;
  collect(
      window->contentItem(),
      [&](QQuickItem* candidate) {
        return isButton(candidate) && candidate->property("text").toString() == text;
      },
      found);
  EXPECT_FALSE(found.empty()) << "no visible button " << text.toStdString();
  return found.empty() ? nullptr : found.front();
}

std::vector<QString> UiTest::buttonsIn(QQuickItem* container) const {
  std::vector<QQuickItem*> found;
  collect(container, isButton, found);
  std::vector<QString> labels;
  for (QQuickItem* each : found) labels.push_back(each->property("text").toString());
  return labels;
}

std::vector<QString> UiTest::queueTitles() const {
  std::vector<QQuickItem*> rows;
  collect(
      item(QStringLiteral("taskQueue")),
      [](QQuickItem* candidate) {
        return candidate->objectName().startsWith(QStringLiteral("taskRow.")) &&
               candidate->property("reorderable").toBool();
      },
      rows);
  std::sort(rows.begin(), rows.end(), [](QQuickItem* a, QQuickItem* b) {
    return a->mapToScene({0, 0}).y() < b->mapToScene({0, 0}).y();
  });
  std::vector<QString> titles;
  for (QQuickItem* row : rows) titles.push_back(row->property("title").toString());
  return titles;
}

QPointF UiTest::centreOf(QQuickItem* target) const {
  return target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
}

void UiTest::click(QQuickItem* target, Qt::KeyboardModifiers modifiers) {
  ASSERT_NE(target, nullptr);
  frame();
  QTest::mouseClick(window, Qt::LeftButton, modifiers, centreOf(target).toPoint());
  settle();
}

void UiTest::drag(QQuickItem* from, QQuickItem* to) {
  ASSERT_NE(from, nullptr);
  ASSERT_NE(to, nullptr);
  frame();
  const QPoint start = centreOf(from).toPoint();
  const QPoint end = centreOf(to).toPoint();
  QTest::mousePress(window, Qt::LeftButton, {}, start);
  constexpr int kSteps = 12;
  for (int step = 1; step <= kSteps; ++step) {
    QTest::mouseMove(window, start + (end - start) * step / kSteps + QPoint(0, step < 3 ? 4 : 0));
  }
  QTest::mouseMove(window, end);
  QTest::mouseRelease(window, Qt::LeftButton, {}, end);
  settle();
}

void UiTest::type(const QString& text) {
  for (const QChar character : text) QTest::keyClick(window, character.toLatin1());
  settle();
}

void UiTest::pressKey(Qt::Key key) {
  QTest::keyClick(window, key);
  settle();
}

void UiTest::screenshot(const QString& name) {
  frame();
  const QString folderPath = QStringLiteral(BRINDLET_SCREENSHOT_DIR);
  QDir().mkpath(folderPath);
  const QImage image = window->grabWindow();
  ASSERT_TRUE(image.save(folderPath + QLatin1Char('/') + name + QStringLiteral(".png")));
}

PersistedState UiTest::stored() const { return LocalStore(folders.stateFile()).load(); }

std::optional<FocusTask> UiTest::storedTask(const Uuid& id) const {
  for (const FocusTask& task : stored().tasks) {
    if (task.id == id) return task;
  }
  return std::nullopt;
}

void UiTest::onModel(const ui::ModelHost::Job& job) {
  host->post(job);
  settle();
}

}  // namespace brindlet::testing

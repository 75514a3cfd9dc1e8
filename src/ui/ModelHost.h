#pragma once

#include <QObject>
#include <QThread>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "app/AppModel.h"
#include "app/AppModelState.h"

class QTimer;

namespace brindlet::ui {

/// Owns the one AppModel and the thread it lives on. The GUI thread never touches the model:
/// controls post jobs, the model thread runs them one at a time in order, and every state the
/// model publishes comes back to the GUI thread as an immutable value.
///
/// While the main window is shown the host runs the start-up pass once and then a heartbeat
/// every second; hiding the window stops the heartbeat, and showing it again starts over with the
/// start-up pass.
class ModelHost : public QObject {
  Q_OBJECT

 public:
  using Job = std::function<void(AppModel&)>;
  using ModelFactory = std::function<std::unique_ptr<AppModel>()>;

  explicit ModelHost(std::unique_ptr<AppModel> model, QObject* parent = nullptr);
  /// Composes the model on the model thread, so that the window can load meanwhile; the model's
  /// first state arrives like any later one (`settle()` waits for it).
  explicit ModelHost(ModelFactory makeModel, QObject* parent = nullptr);
  ~ModelHost() override;

  /// Queues a job for the model thread and returns at once. The number it returns is the job's
  /// place in the queue: `publishedSequence()` reaches it once the job's result is on show.
  std::uint64_t post(Job job);

  /// The last state the model published, as the GUI thread has it.
  [[nodiscard]] const AppModelState& state() const { return state_; }
  /// The number of the last job finished before `state()` was published.
  [[nodiscard]] std::uint64_t publishedSequence() const { return publishedSequence_; }

  /// Follows the main window: shown starts the start-up pass and the heartbeat, hidden stops it.
  /// Saying the same twice in a row changes nothing.
  void setWindowShown(bool shown);
  /// The pause between heartbeats; one second unless a test asks for another.
  void setHeartbeatInterval(std::chrono::milliseconds interval);

  /// Waits until every job posted so far has run, then delivers what they published. Only for
  /// callers that may block the GUI thread briefly, such as tests and the shutdown path.
  void settle();
  /// As `settle()`, but waits no longer than `patience`: returns whether every job had run. What
  /// was published by then is delivered either way; the rest arrives through the event loop.
  bool settle(std::chrono::milliseconds patience);
  /// Delivers what the model has published by now, without waiting for anything more.
  void deliverPublished();

  /// Whether the model has sent its state yet; until it has, `state()` is an empty plan that stands
  /// in for the one not yet read.
  [[nodiscard]] bool hasModelState() const { return hasModelState_; }
  [[nodiscard]] int recoverCount() const { return recoverCount_.load(); }
  [[nodiscard]] int heartbeatCount() const { return heartbeatCount_.load(); }
  [[nodiscard]] bool heartbeatRunning() const { return heartbeatRunning_.load(); }

 signals:
  /// A newer state is in `state()`.
  void stateChanged();

 private:
  void startThread();
  void forwardChanges();
  void runOnModelThread(std::function<void()> work);
  void receive(const AppModelState& state, std::uint64_t sequence);

  std::unique_ptr<AppModel> model_;
  QThread thread_;
  QObject* worker_ = nullptr;
  QTimer* heartbeat_ = nullptr;
  AppModelState state_;
  bool hasModelState_ = false;
  std::uint64_t publishedSequence_ = 0;
  std::uint64_t nextSequence_ = 0;
  // Written only on the model thread: the number of the last job that has run there.
  std::uint64_t finishedSequence_ = 0;
  std::atomic<int> recoverCount_ = 0;
  bool windowShown_ = false;
  std::atomic<int> heartbeatCount_ = 0;
  std::atomic<bool> heartbeatRunning_ = false;
};

}  // namespace brindlet::ui

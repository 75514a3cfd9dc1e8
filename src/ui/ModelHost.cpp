#include "ModelHost.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTimer>
#include <utility>

namespace brindlet::ui {

ModelHost::ModelHost(std::unique_ptr<AppModel> model, QObject* parent)
    : QObject(parent), model_(std::move(model)), state_(model_->state()), hasModelState_(true) {
  startThread();
  forwardChanges();
}

// Until the model's first state arrives, the window has an empty plan to bind to.
ModelHost::ModelHost(ModelFactory makeModel, QObject* parent)
    : QObject(parent),
      state_(AppModelState{.taskSnapshot = TaskStoreSnapshot(PersistedState::initial())}) {
  startThread();
  runOnModelThread([this, makeModel = std::move(makeModel)] {
    model_ = makeModel();
    forwardChanges();
    const AppModelState first = model_->state();
    QMetaObject::invokeMethod(
        this, [this, first] { receive(first, 0); }, Qt::QueuedConnection);
  });
}

void ModelHost::startThread() {
  worker_ = new QObject;
  heartbeat_ = new QTimer(worker_);
  heartbeat_->setInterval(std::chrono::seconds(1));
  connect(heartbeat_, &QTimer::timeout, worker_, [this] {
    ++heartbeatCount_;
    model_->heartbeat();
  });
  worker_->moveToThread(&thread_);
  connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
  thread_.setObjectName(QStringLiteral("model"));
  thread_.start();
}

void ModelHost::forwardChanges() {
  // Runs on the model thread; the copy shares the task document, so it is cheap.
  model_->setOnChange([this](const AppModelState& published) {
    const std::uint64_t sequence = finishedSequence_;
    QMetaObject::invokeMethod(
        this, [this, published, sequence] { receive(published, sequence); }, Qt::QueuedConnection);
  });
}

ModelHost::~ModelHost() {
  QMetaObject::invokeMethod(
      worker_,
      [this] {
        heartbeat_->stop();
        heartbeatRunning_ = false;
      },
      Qt::BlockingQueuedConnection);
  thread_.quit();
  thread_.wait();
  if (model_) model_->setOnChange({});
}

void ModelHost::runOnModelThread(std::function<void()> work) {
  QMetaObject::invokeMethod(worker_, std::move(work), Qt::QueuedConnection);
}

std::uint64_t ModelHost::post(Job job) {
  const std::uint64_t sequence = ++nextSequence_;
  runOnModelThread([this, job = std::move(job), sequence] {
    job(*model_);
    finishedSequence_ = sequence;
  });
  return sequence;
}

void ModelHost::setWindowShown(bool shown) {
  // The app starts the pass before the window has loaded; the window's own show is then no news.
  if (shown == windowShown_) return;
  windowShown_ = shown;
  if (shown) {
    post([this](AppModel& model) {
      ++recoverCount_;
      model.recover();
      heartbeat_->start();
      heartbeatRunning_ = true;
    });
  } else {
    runOnModelThread([this] {
      heartbeat_->stop();
      heartbeatRunning_ = false;
    });
  }
}

void ModelHost::setHeartbeatInterval(std::chrono::milliseconds interval) {
  runOnModelThread([this, interval] { heartbeat_->setInterval(interval); });
}

void ModelHost::settle() {
  QMetaObject::invokeMethod(
      worker_, [] {}, Qt::BlockingQueuedConnection);
  deliverPublished();
}

bool ModelHost::settle(std::chrono::milliseconds patience) {
  // Shared with the job, which may run after this wait has given up.
  const auto done = std::make_shared<QSemaphore>();
  runOnModelThread([done] { done->release(); });
  const bool ran = done->tryAcquire(1, static_cast<int>(patience.count()));
  deliverPublished();
  return ran;
}

void ModelHost::deliverPublished() { QCoreApplication::sendPostedEvents(this); }

void ModelHost::receive(const AppModelState& state, std::uint64_t sequence) {
  state_ = state;
  hasModelState_ = true;
  publishedSequence_ = sequence;
  emit stateChanged();
}

}  // namespace brindlet::ui

#include "DesktopReminderScheduler.h"

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

#include "UiTexts.h"
#include "records/EnumText.h"
#include "reminders/ReminderPlanner.h"

namespace brindlet::ui {
namespace {

// The timer looks again at least this often, so that a clock changed meanwhile or a machine that
// slept does not leave a reminder waiting for long.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::minutes(1);

QJsonObject toJson(const ReminderRequest& request) {
  return QJsonObject{
      {QStringLiteral("id"), qs(request.id)},
      {QStringLiteral("taskID"), qs(request.taskID.uppercaseText())},
      {QStringLiteral("kind"), qs(kReminderKindText.text(request.kind))},
      {QStringLiteral("fireDate"), request.fireDate.secondsSinceReferenceDate()},
      {QStringLiteral("title"), qs(request.title)},
      {QStringLiteral("body"), qs(request.body)},
  };
}

std::optional<ReminderRequest> fromJson(const QJsonObject& object) {
  const std::optional<Uuid> taskID =
      Uuid::parse(object.value(QStringLiteral("taskID")).toString().toStdString());
  const std::optional<ReminderKind> kind =
      kReminderKindText.parse(object.value(QStringLiteral("kind")).toString().toStdString());
  const QString id = object.value(QStringLiteral("id")).toString();
  if (!taskID || !kind || id.isEmpty()) return std::nullopt;
  return ReminderRequest{
      .id = id.toStdString(),
      .taskID = *taskID,
      .kind = *kind,
      .fireDate = Instant(object.value(QStringLiteral("fireDate")).toDouble()),
      .title = object.value(QStringLiteral("title")).toString().toStdString(),
      .body = object.value(QStringLiteral("body")).toString().toStdString(),
  };
}

}  // namespace

DesktopReminderScheduler::DesktopReminderScheduler(std::filesystem::path file,
                                                   std::shared_ptr<NotificationSender> sender,
                                                   std::shared_ptr<const Clock> clock,
                                                   QObject* parent)
    : QObject(parent),
      file_(std::move(file)),
      sender_(std::move(sender)),
      clock_(std::move(clock)) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &DesktopReminderScheduler::fireDue);
  load();
}

void DesktopReminderScheduler::start() { fireDue(); }

ReminderAuthorization DesktopReminderScheduler::authorizationStatus() {
  return sender_->serviceAvailable() ? ReminderAuthorization::authorized
                                     : ReminderAuthorization::denied;
}

bool DesktopReminderScheduler::requestAuthorization() {
  // The desktop asks nobody: a running notification service is the permission.
  return authorizationStatus() == ReminderAuthorization::authorized;
}

void DesktopReminderScheduler::schedule(const std::vector<ReminderRequest>& requests) {
  {
    const std::lock_guard lock(mutex_);
    for (const ReminderRequest& request : requests) pending_[request.id] = request;
    saveLocked();
  }
  QMetaObject::invokeMethod(this, &DesktopReminderScheduler::rearm, Qt::QueuedConnection);
}

void DesktopReminderScheduler::cancel(const Uuid& taskID) {
  {
    const std::lock_guard lock(mutex_);
    for (const ReminderKind kind : kAllReminderKinds) {
      pending_.erase(ReminderPlanner::identifier(taskID, kind));
    }
    saveLocked();
  }
  QMetaObject::invokeMethod(this, &DesktopReminderScheduler::rearm, Qt::QueuedConnection);
}

void DesktopReminderScheduler::fireDue() {
  std::vector<ReminderRequest> due;
  {
    const std::lock_guard lock(mutex_);
    const Instant now = clock_->now();
    for (auto it = pending_.begin(); it != pending_.end();) {
      if (it->second.fireDate <= now) {
        due.push_back(it->second);
        it = pending_.erase(it);
      } else {
        ++it;
      }
    }
    // Forgotten before it is sent: a crash in between loses a reminder rather than repeating it.
    if (!due.empty()) saveLocked();
  }
  std::sort(due.begin(), due.end(), [](const ReminderRequest& a, const ReminderRequest& b) {
    return a.fireDate < b.fireDate;
  });
  for (const ReminderRequest& request : due) sender_->send(request);
  rearm();
}

std::vector<ReminderRequest> DesktopReminderScheduler::pendingRequests() const {
  const std::lock_guard lock(mutex_);
  std::vector<ReminderRequest> requests;
  for (const auto& [id, request] : pending_) requests.push_back(request);
  return requests;
}

std::optional<std::chrono::milliseconds> DesktopReminderScheduler::nextWake() const {
  if (!timer_.isActive()) return std::nullopt;
  return std::chrono::milliseconds(timer_.interval());
}

void DesktopReminderScheduler::rearm() {
  std::optional<Instant> earliest;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [id, request] : pending_) {
      if (!earliest || request.fireDate < *earliest) earliest = request.fireDate;
    }
  }
  if (!earliest) {
    timer_.stop();
    return;
  }
  const double seconds = std::max(0.0, earliest->since(clock_->now()));
  const auto wait = std::min(kLongestWait, std::chrono::milliseconds(std::llround(seconds * 1000)));
  timer_.start(wait);
}

void DesktopReminderScheduler::load() {
  QFile file(QString::fromStdString(file_.string()));
  if (!file.open(QIODevice::ReadOnly)) return;
  const QJsonArray entries = QJsonDocument::fromJson(file.readAll()).array();
  const std::lock_guard lock(mutex_);
  for (const QJsonValue& entry : entries) {
    if (const std::optional<ReminderRequest> request = fromJson(entry.toObject())) {
      pending_[request->id] = *request;
    }
  }
}

void DesktopReminderScheduler::saveLocked() const {
  std::error_code ignored;
  std::filesystem::create_directories(file_.parent_path(), ignored);
  QJsonArray entries;
  for (const auto& [id, request] : pending_) entries.append(toJson(request));
  QSaveFile file(QString::fromStdString(file_.string()));
  if (!file.open(QIODevice::WriteOnly)) {
    throw std::runtime_error("The reminder list could not be written: " +
                             file.errorString().toStdString());
  }
  file.write(QJsonDocument(entries).toJson());
  if (!file.commit()) {
    throw std::runtime_error("The reminder list could not be written: " +
                             file.errorString().toStdString());
  }
}

}  // namespace brindlet::ui

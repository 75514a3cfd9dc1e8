#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "NotificationSender.h"
#include "reminders/ReminderScheduling.h"
#include "support/Clock.h"

namespace brindlet::ui {

/// The desktop's notification scheduling. Pending requests are kept in a file in the data
/// folder, so they outlive the process; each fires once, at its time while the app runs, or at
/// the next start when its time passed while the app was not running.
///
/// The model thread schedules and cancels; the timer and the firing run on the thread this
/// object lives on. The pending list is shared between the two under a mutex.
class DesktopReminderScheduler : public QObject, public ReminderScheduling {
  Q_OBJECT

 public:
  DesktopReminderScheduler(std::filesystem::path file, std::shared_ptr<NotificationSender> sender,
                           std::shared_ptr<const Clock> clock, QObject* parent = nullptr);

  /// Fires what fell due while the app was not running and sets the timer for the rest.
  void start();

  ReminderAuthorization authorizationStatus() override;
  bool requestAuthorization() override;
  void schedule(const std::vector<ReminderRequest>& requests) override;
  void cancel(const Uuid& taskID) override;

  /// Sends every request whose time has come, forgets it, and sets the timer for the next one.
  void fireDue();

  [[nodiscard]] std::vector<ReminderRequest> pendingRequests() const;
  /// How long the timer waits before it looks again; absent while nothing is pending.
  [[nodiscard]] std::optional<std::chrono::milliseconds> nextWake() const;

 private:
  void load();
  void saveLocked() const;
  void rearm();

  std::filesystem::path file_;
  std::shared_ptr<NotificationSender> sender_;
  std::shared_ptr<const Clock> clock_;
  mutable std::mutex mutex_;
  std::map<std::string, ReminderRequest> pending_;
  QTimer timer_;
};

}  // namespace brindlet::ui

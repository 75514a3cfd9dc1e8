#pragma once

#include <QDBusConnection>

#include "reminders/ReminderRequest.h"

namespace brindlet::ui {

/// Where the desktop's notifications go.
class NotificationSender {
 public:
  virtual ~NotificationSender() = default;
  /// Whether a notification service answers, or can be started, right now.
  [[nodiscard]] virtual bool serviceAvailable() = 0;
  /// Shows the request's title and body; does not wait for the service.
  virtual void send(const ReminderRequest& request) = 0;
};

/// The freedesktop notification service, org.freedesktop.Notifications, on a D-Bus bus. Safe to
/// call from any thread.
class DBusNotificationSender : public NotificationSender {
 public:
  static constexpr const char* kService = "org.freedesktop.Notifications";

  explicit DBusNotificationSender(QDBusConnection connection) : connection_(connection) {}

  [[nodiscard]] bool serviceAvailable() override;
  void send(const ReminderRequest& request) override;

 private:
  QDBusConnection connection_;
};

}  // namespace brindlet::ui

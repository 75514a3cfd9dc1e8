#pragma once

#include <QDBusConnection>
#include <functional>
#include <mutex>
#include <optional>

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
///
/// The bus is opened by `connect` the first time it is needed: loading the D-Bus library and
/// greeting the bus take several milliseconds that the window's first frame need not wait for.
class DBusNotificationSender : public NotificationSender {
 public:
  static constexpr const char* kService = "org.freedesktop.Notifications";

  explicit DBusNotificationSender(std::function<QDBusConnection()> connect)
      : connect_(std::move(connect)) {}

  [[nodiscard]] bool serviceAvailable() override;
  void send(const ReminderRequest& request) override;

 private:
  QDBusConnection& connection();

  std::function<QDBusConnection()> connect_;
  std::once_flag opened_;
  std::optional<QDBusConnection> connection_;
};

}  // namespace brindlet::ui

#include "NotificationSender.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>

#include "UiTexts.h"

namespace brindlet::ui {
namespace {

constexpr int kBusTimeoutMs = 2000;

QDBusMessage busCall(const QString& method) {
  return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                        QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus"), method);
}

}  // namespace

QDBusConnection& DBusNotificationSender::connection() {
  std::call_once(opened_, [this] { connection_.emplace(connect_()); });
  return *connection_;
}

bool DBusNotificationSender::serviceAvailable() {
  QDBusConnection& bus = connection();
  if (!bus.isConnected()) return false;
  const QString service = QString::fromLatin1(kService);

  QDBusMessage hasOwner = busCall(QStringLiteral("NameHasOwner"));
  hasOwner << service;
  const QDBusReply<bool> owned = bus.call(hasOwner, QDBus::Block, kBusTimeoutMs);
  if (owned.isValid() && owned.value()) return true;

  const QDBusReply<QStringList> activatable =
      bus.call(busCall(QStringLiteral("ListActivatableNames")), QDBus::Block, kBusTimeoutMs);
  return activatable.isValid() && activatable.value().contains(service);
}

void DBusNotificationSender::send(const ReminderRequest& request) {
  QDBusMessage notify = QDBusMessage::createMethodCall(
      QString::fromLatin1(kService), QStringLiteral("/org/freedesktop/Notifications"),
      QString::fromLatin1(kService), QStringLiteral("Notify"));
  // The application id names the installed icon and lets the desktop group the notification
  // with the app's launcher.
  const QString applicationId = QGuiApplication::desktopFileName();
  QVariantMap hints;
  if (!applicationId.isEmpty()) hints.insert(QStringLiteral("desktop-entry"), applicationId);
  notify << QStringLiteral("Brindlet") << 0U << applicationId << qs(request.title)
         << qs(request.body) << QStringList() << hints << -1;
  connection().asyncCall(notify);
}

}  // namespace brindlet::ui

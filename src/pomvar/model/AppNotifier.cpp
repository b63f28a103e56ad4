#include "model/AppNotifier.h"

#include "desktop/DesktopNotification.h"
#include "model/ModelLog.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>

namespace pomvar {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kInterface = QStringLiteral("org.freedesktop.Notifications");

} // namespace

AppNotifier::AppNotifier(QObject* parent)
    : QObject(parent)
{}

void AppNotifier::requestPermission()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        const QString error = bus.lastError().message();
        trace(lcModel(), error.toStdString());
        Q_EMIT permissionAnswered(false, error);
        return;
    }
    const auto call = bus.asyncCall(QDBusMessage::createMethodCall(
        kService, kPath, kInterface, QStringLiteral("GetCapabilities")));
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<QStringList> reply = *w;
        if (reply.isError()) {
            const QString error = reply.error().message();
            trace(lcModel(), error.toStdString());
            Q_EMIT permissionAnswered(false, error);
            return;
        }
        trace(lcModel(), "Pomvar: Notifications enabled.");
        Q_EMIT permissionAnswered(true, {});
    });
}

void AppNotifier::postUpdateComplete(int delayMs)
{
    QTimer::singleShot(delayMs, this, &AppNotifier::sendUpdateComplete);
}

void AppNotifier::sendUpdateComplete()
{
    const auto call =
        DesktopNotification(tr("Update Complete"), tr("Pomvar for Linux was successfully updated."))
            .withSound(QStringLiteral("message-new-instant"))
            .post();
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<uint> reply = *w;
        if (reply.isError()) {
            const QString error = reply.error().message();
            trace(lcModel(), "PomvarViewModel.showPostUpdateNotification(): ", error.toStdString());
            Q_EMIT notificationPosted(0, error);
            return;
        }
        Q_EMIT notificationPosted(reply.value(), {});
    });
}

} // namespace pomvar

#pragma once

#include <QObject>
#include <QString>

namespace pomvar {

// Desktop notifications through the freedesktop notification service on the session bus.
// Calls are asynchronous: the main thread never waits on D-Bus, and failures are only traced.
class AppNotifier : public QObject
{
    Q_OBJECT

public:
    explicit AppNotifier(QObject* parent = nullptr);

    // Asks whether notifications can be shown: granted when the service answers.
    void requestPermission();
    // Posts the post-update notification after `delayMs`.
    void postUpdateComplete(int delayMs = 1000);

Q_SIGNALS:
    // The service answered the permission request (granted) or failed (error text).
    void permissionAnswered(bool granted, const QString& error);
    // A notification was accepted (its id) or failed (error text).
    void notificationPosted(uint id, const QString& error);

private:
    void sendUpdateComplete();
};

} // namespace pomvar

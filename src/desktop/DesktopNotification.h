#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QVariantMap>

namespace pomvar {

// One notification through the freedesktop notification service on the session bus, as both
// programs post them: from "Pomvar", with its installed icon and desktop entry, so that the
// desktop groups them with Pomvar's windows. Summary and body are plain text: a service that
// reads markup in the body is given it escaped, so a name from a desktop entry shows as written.
class DesktopNotification
{
public:
    static constexpr const char* kIcon = "org.pomvar.Pomvar";

    DesktopNotification(QString summary, QString body);

    // A sound theme's sound to play with it.
    DesktopNotification& withSound(const QString& name);

    // The Notify call.
    QDBusMessage message() const;
    // Posts it without waiting; the reply carries the notification's id or the error.
    QDBusPendingCall post() const;
    // Posts it and waits for the service at most `timeoutMs`: for a program's last words before
    // it exits. False when the service did not take it.
    bool postAndWait(int timeoutMs) const;

    // `text` with the characters of the notification body's markup escaped.
    static QString escaped(const QString& text);

private:
    QString m_summary;
    QString m_body;
    QVariantMap m_hints;
};

} // namespace pomvar

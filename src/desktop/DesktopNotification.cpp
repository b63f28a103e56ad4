#include "desktop/DesktopNotification.h"

#include <QDBusConnection>

namespace pomvar {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

DesktopNotification::DesktopNotification(QString summary, QString body)
    : m_summary(std::move(summary))
    , m_body(std::move(body))
    , m_hints{ { QStringLiteral("desktop-entry"), QString::fromLatin1(kIcon) } }
{}

DesktopNotification& DesktopNotification::withSound(const QString& name)
{
    m_hints.insert(QStringLiteral("sound-name"), name);
    return *this;
}

QDBusMessage DesktopNotification::message() const
{
    QDBusMessage notify =
        QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("Notify"));
    // replaces_id 0: the service gives every notification a fresh id; -1: its own timeout.
    notify << QStringLiteral("Pomvar") << uint(0) << QString::fromLatin1(kIcon) << m_summary
           << escaped(m_body) << QStringList() << m_hints << int(-1);
    return notify;
}

QDBusPendingCall DesktopNotification::post() const
{
    return QDBusConnection::sessionBus().asyncCall(message());
}

bool DesktopNotification::postAndWait(int timeoutMs) const
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const QDBusMessage reply = bus.call(message(), QDBus::Block, timeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage;
}

QString DesktopNotification::escaped(const QString& text)
{
    // The body markup is a small subset of HTML: these three are all it reads specially.
    QString plain = text;
    plain.replace(u'&', QStringLiteral("&amp;"));
    plain.replace(u'<', QStringLiteral("&lt;"));
    plain.replace(u'>', QStringLiteral("&gt;"));
    return plain;
}

} // namespace pomvar

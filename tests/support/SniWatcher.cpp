#include "SniWatcher.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QTest>

namespace pomvar::test {

namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");

} // namespace

SniWatcher::SniWatcher(QString address)
    : m_address(std::move(address))
{}

SniWatcher::~SniWatcher()
{
    stop();
}

bool SniWatcher::start()
{
    if (m_running)
        return true;
    // A new connection each time, as a restarted tray process has.
    static int connections = 0;
    m_connectionName = QStringLiteral("sni-watcher-%1").arg(++connections);
    QDBusConnection bus = QDBusConnection::connectToBus(m_address, m_connectionName);
    const auto exports = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                         QDBusConnection::ExportAllProperties;
    if (!bus.isConnected() || !bus.registerObject("/StatusNotifierWatcher", this, exports) ||
        !bus.registerService(kWatcher)) {
        QDBusConnection::disconnectFromBus(m_connectionName);
        return false;
    }
    m_running = true;
    return true;
}

void SniWatcher::stop()
{
    if (!m_running)
        return;
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_items.clear();
    m_running = false;
}

void SniWatcher::RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message)
{
    // An item may give its object path instead of a name: it is then on the caller's connection.
    const QString item = service.startsWith('/') ? message.service() + service : service;
    if (!m_items.contains(item))
        m_items.append(item);
}

QDBusMessage SniWatcher::callItem(const QDBusMessage& call)
{
    QDBusPendingCall pending = QDBusConnection(m_connectionName).asyncCall(call);
    if (!QTest::qWaitFor([&] { return pending.isFinished(); }, 10000))
        return {};
    return pending.reply();
}

QVariant SniWatcher::itemProperty(const QString& item, const QString& name)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(item,
                                       QStringLiteral("/StatusNotifierItem"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"),
                                       QStringLiteral("Get"));
    call << kItemInterface << name;
    const QDBusMessage reply = callItem(call);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

bool SniWatcher::click(const QString& item, const QString& method, int x, int y)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        item, QStringLiteral("/StatusNotifierItem"), kItemInterface, method);
    call << x << y;
    return callItem(call).type() == QDBusMessage::ReplyMessage;
}

} // namespace pomvar::test

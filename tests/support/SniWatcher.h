#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <QVariant>

namespace pomvar::test {

// A tray as KDE Plasma or the GNOME AppIndicator extension runs one: the StatusNotifierWatcher
// (its registration, all the item uses) with a host on its own connection to the session bus at
// `address`. The host side reads an
// item's properties and clicks it as hosts do; every call waits on the event loop, so the item
// may live in this very process.
class SniWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    explicit SniWatcher(QString address)
        : m_address(std::move(address))
    {}
    ~SniWatcher() override { stop(); }

    // Takes the watcher's name, as a tray starting; false when someone else holds it.
    bool start()
    {
        // A new connection each time, as a restarted tray process has.
        static int connections = 0;
        m_connectionName = QStringLiteral("sni-watcher-%1").arg(++connections);
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, m_connectionName);
        m_running =
            bus.isConnected() &&
            bus.registerObject("/StatusNotifierWatcher", this, QDBusConnection::ExportAllSlots) &&
            bus.registerService("org.kde.StatusNotifierWatcher");
        if (!m_running)
            QDBusConnection::disconnectFromBus(m_connectionName);
        return m_running;
    }
    // Leaves the bus, as a tray quitting: the items are forgotten.
    void stop()
    {
        if (std::exchange(m_running, false))
            QDBusConnection::disconnectFromBus(m_connectionName);
        m_items.clear();
    }

    QStringList registeredItems() const { return m_items; }

    // Host side. An invalid value when the call fails.
    QVariant itemProperty(const QString& item, const QString& name)
    {
        const QDBusMessage reply = callItem(
            item, "org.freedesktop.DBus.Properties", "Get", { "org.kde.StatusNotifierItem", name });
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
            return {};
        return reply.arguments().constFirst().value<QDBusVariant>().variant();
    }
    // Calls Activate, ContextMenu or SecondaryActivate; true when the item answered.
    bool click(const QString& item, const QString& method, int x, int y)
    {
        return callItem(item, "org.kde.StatusNotifierItem", method, { x, y }).type() ==
               QDBusMessage::ReplyMessage;
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message)
    {
        // An item may give its object path instead of a name: it is then on the caller's
        // connection.
        const QString item = service.startsWith('/') ? message.service() + service : service;
        if (!m_items.contains(item))
            m_items.append(item);
    }

private:
    QDBusMessage callItem(const QString& item,
                          const QString& interface,
                          const QString& method,
                          const QVariantList& arguments)
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(item, "/StatusNotifierItem", interface, method);
        call.setArguments(arguments);
        QDBusPendingCall pending = QDBusConnection(m_connectionName).asyncCall(call);
        if (!QTest::qWaitFor([&] { return pending.isFinished(); }, 10000))
            return {};
        return pending.reply();
    }

    QString m_address;
    QString m_connectionName;
    QStringList m_items;
    bool m_running = false;
};

} // namespace pomvar::test

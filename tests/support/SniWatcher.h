#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariant>

namespace pomvar::test {

// A tray as KDE Plasma or the GNOME AppIndicator extension runs one: the StatusNotifierWatcher
// with a host on its own connection to the session bus at `address`. The host side reads an
// item's properties and clicks it as hosts do; every call waits on the event loop, so the item
// may live in this very process.
class SniWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    explicit SniWatcher(QString address);
    ~SniWatcher() override;

    // Takes the watcher's name, as a tray starting; false when someone else holds it.
    bool start();
    // Leaves the bus, as a tray quitting: the items are forgotten.
    void stop();

    QStringList registeredItems() const { return m_items; }
    bool isHostRegistered() const { return m_running; }
    int protocolVersion() const { return 0; }

    // Host side. An invalid value when the call fails.
    QVariant itemProperty(const QString& item, const QString& name);
    // Calls Activate, ContextMenu or SecondaryActivate; true when the item answered.
    bool click(const QString& item, const QString& method, int x, int y);

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message);

private:
    QDBusMessage callItem(const QDBusMessage& call);

    QString m_address;
    QString m_connectionName;
    QStringList m_items;
    bool m_running = false;
};

} // namespace pomvar::test

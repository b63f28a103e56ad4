#include "tray/StatusNotifierItem.h"

#include "tray/SniToolTip.h"
#include "tray/StatusNotifierItemAdaptor.h"
#include "tray/TrayLog.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace pomvar {

const QString StatusNotifierItem::watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString StatusNotifierItem::objectPath = QStringLiteral("/StatusNotifierItem");

namespace {

int nextInstance()
{
    static int instances = 0;
    return ++instances;
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, QString id, QObject* parent)
    : QObject(parent)
    , m_bus(bus)
    , m_watcher(new QDBusServiceWatcher(watcherService,
                                        m_bus,
                                        QDBusServiceWatcher::WatchForOwnerChange,
                                        this))
    , m_id(std::move(id))
    , m_service(QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                    .arg(QCoreApplication::applicationPid())
                    .arg(nextInstance()))
{
    qDBusRegisterMetaType<SniPixmap>();
    qDBusRegisterMetaType<SniPixmapList>();
    qDBusRegisterMetaType<SniToolTip>();
    new StatusNotifierItemAdaptor(this);
    connect(m_watcher,
            &QDBusServiceWatcher::serviceOwnerChanged,
            this,
            &StatusNotifierItem::watcherOwnerChanged);
}

StatusNotifierItem::~StatusNotifierItem()
{
    if (!m_started)
        return;
    m_bus.unregisterObject(objectPath);
    m_bus.unregisterService(m_service);
}

bool StatusNotifierItem::isWatcherPresent() const
{
    const QDBusConnectionInterface* bus = m_bus.interface();
    return bus && bus->isServiceRegistered(watcherService).value();
}

bool StatusNotifierItem::start()
{
    if (m_started)
        return true;
    if (!m_bus.isConnected() || !m_bus.registerObject(objectPath, this))
        return false;
    // Hosts find the item by this name; the connection's own name serves when it is taken.
    if (!m_bus.registerService(m_service))
        m_service = m_bus.baseService();
    m_started = true;
    registerWithWatcher();
    return true;
}

void StatusNotifierItem::registerWithWatcher()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherService,
                                       QStringLiteral("/StatusNotifierWatcher"),
                                       watcherService,
                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_service;
    // Asynchronous: the watcher may need this very thread to answer.
    auto* pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(
        pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            if (call->isError())
                printWarning(lcTray(),
                             concat("Pomvar: the tray did not take the icon: ",
                                    call->error().message().toStdString()));
            else
                Q_EMIT registered();
        });
}

void StatusNotifierItem::watcherOwnerChanged(const QString&,
                                             const QString&,
                                             const QString& newOwner)
{
    if (newOwner.isEmpty()) {
        Q_EMIT watcherVanished();
        return;
    }
    Q_EMIT watcherAppeared();
    if (m_started)
        registerWithWatcher();
}

void StatusNotifierItem::setIcon(const QString& name,
                                 const QString& themePath,
                                 const SniPixmapList& pixmaps)
{
    m_iconName = name;
    m_iconThemePath = themePath;
    m_iconPixmaps = pixmaps;
    Q_EMIT iconChanged();
}

void StatusNotifierItem::setTitle(const QString& title)
{
    m_title = title;
    Q_EMIT titleChanged();
}

void StatusNotifierItem::setToolTip(const QString& title)
{
    m_toolTipTitle = title;
    Q_EMIT toolTipChanged();
}

} // namespace pomvar

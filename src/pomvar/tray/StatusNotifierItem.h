#pragma once

#include "tray/SniPixmap.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

class QDBusServiceWatcher;

namespace pomvar {

// A tray icon as a StatusNotifierItem on the session bus: what hosts show (icon name and
// pixmaps, title, tool tip) and the clicks they forward with the position they give. Once
// started it tells the watcher about itself, and again each time a watcher starts, so the icon
// comes back when the tray restarts. Needs no display.
class StatusNotifierItem : public QObject
{
    Q_OBJECT

public:
    static const QString watcherService;
    static const QString objectPath;

    // `id`: the application's identifier, stable across sessions.
    StatusNotifierItem(const QDBusConnection& bus, QString id, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    // True when a watcher owns its name on the bus now.
    bool isWatcherPresent() const;
    // Exports the item and registers it with the watcher; false when the bus is unreachable.
    bool start();
    bool isStarted() const { return m_started; }
    const QString& serviceName() const { return m_service; }

    void setIcon(const QString& name, const QString& themePath, const SniPixmapList& pixmaps);
    void setTitle(const QString& title);
    void setToolTip(const QString& title);

    const QString& id() const { return m_id; }
    const QString& title() const { return m_title; }
    const QString& iconName() const { return m_iconName; }
    const QString& iconThemePath() const { return m_iconThemePath; }
    const SniPixmapList& iconPixmaps() const { return m_iconPixmaps; }
    const QString& toolTipTitle() const { return m_toolTipTitle; }

Q_SIGNALS:
    // The host's clicks: primary, context menu, middle. (x, y) is the screen position the host
    // gives, (0, 0) when it gives none.
    void activateRequested(int x, int y);
    void contextMenuRequested(int x, int y);
    void secondaryActivateRequested(int x, int y);
    void watcherAppeared();
    void watcherVanished();
    // The watcher accepted the registration.
    void registered();

    // For hosts: what they show changed.
    void iconChanged();
    void titleChanged();
    void toolTipChanged();

private:
    void registerWithWatcher();
    void watcherOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

    QDBusConnection m_bus;
    QDBusServiceWatcher* m_watcher;
    QString m_id;
    QString m_service;
    QString m_title;
    QString m_iconName;
    QString m_iconThemePath;
    SniPixmapList m_iconPixmaps;
    QString m_toolTipTitle;
    bool m_started = false;
};

} // namespace pomvar

#pragma once

#include "tray/SniPixmap.h"
#include "tray/SniToolTip.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

namespace pomvar {

class StatusNotifierItem;

// The org.kde.StatusNotifierItem interface of a StatusNotifierItem, as hosts call it. The item
// has no exported menu: hosts call ContextMenu, and the application shows its own.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(pomvar::SniPixmapList IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(pomvar::SniPixmapList OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(pomvar::SniPixmapList AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(pomvar::SniToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

public:
    explicit StatusNotifierItemAdaptor(StatusNotifierItem* item);

    QString category() const;
    QString id() const;
    QString title() const;
    QString status() const;
    int windowId() const { return 0; }
    QString iconName() const;
    QString iconThemePath() const;
    SniPixmapList iconPixmap() const;
    QString none() const { return {}; }
    SniPixmapList noPixmaps() const { return {}; }
    SniToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const;

public Q_SLOTS:
    void Activate(int x, int y);
    void ContextMenu(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString& orientation);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private:
    StatusNotifierItem* m_item;
};

} // namespace pomvar

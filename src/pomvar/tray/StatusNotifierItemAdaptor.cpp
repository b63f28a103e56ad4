#include "tray/StatusNotifierItemAdaptor.h"

#include "tray/StatusNotifierItem.h"

namespace pomvar {

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(StatusNotifierItem* item)
    : QDBusAbstractAdaptor(item)
    , m_item(item)
{
    connect(item, &StatusNotifierItem::titleChanged, this, &StatusNotifierItemAdaptor::NewTitle);
    connect(item, &StatusNotifierItem::iconChanged, this, &StatusNotifierItemAdaptor::NewIcon);
    connect(
        item, &StatusNotifierItem::toolTipChanged, this, &StatusNotifierItemAdaptor::NewToolTip);
}

QString StatusNotifierItemAdaptor::category() const
{
    return QStringLiteral("ApplicationStatus");
}

QString StatusNotifierItemAdaptor::id() const
{
    return m_item->id();
}

QString StatusNotifierItemAdaptor::title() const
{
    return m_item->title();
}

QString StatusNotifierItemAdaptor::status() const
{
    // A launcher's icon is always shown.
    return QStringLiteral("Active");
}

QString StatusNotifierItemAdaptor::iconName() const
{
    return m_item->iconName();
}

QString StatusNotifierItemAdaptor::iconThemePath() const
{
    return m_item->iconThemePath();
}

SniPixmapList StatusNotifierItemAdaptor::iconPixmap() const
{
    return m_item->iconPixmaps();
}

SniToolTip StatusNotifierItemAdaptor::toolTip() const
{
    return { m_item->iconName(), {}, m_item->toolTipTitle(), {} };
}

QDBusObjectPath StatusNotifierItemAdaptor::menu() const
{
    // The path hosts read as "no exported menu".
    return QDBusObjectPath(QStringLiteral("/NO_DBUSMENU"));
}

void StatusNotifierItemAdaptor::Activate(int x, int y)
{
    Q_EMIT m_item->activateRequested(x, y);
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y)
{
    Q_EMIT m_item->contextMenuRequested(x, y);
}

void StatusNotifierItemAdaptor::SecondaryActivate(int x, int y)
{
    Q_EMIT m_item->secondaryActivateRequested(x, y);
}

void StatusNotifierItemAdaptor::Scroll(int, const QString&)
{
    // Scrolling over the icon does nothing.
}

} // namespace pomvar

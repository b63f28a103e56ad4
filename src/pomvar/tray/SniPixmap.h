#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

class QDBusArgument;

namespace pomvar {

// One size of a tray item's icon as StatusNotifierItem hosts read it: (iiay), the pixels as
// ARGB32 in network byte order, row by row.
struct SniPixmap
{
    int width = 0;
    int height = 0;
    QByteArray argb;
};
using SniPixmapList = QList<SniPixmap>;

QDBusArgument& operator<<(QDBusArgument& argument, const SniPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, SniPixmap& pixmap);

} // namespace pomvar

Q_DECLARE_METATYPE(pomvar::SniPixmap)
Q_DECLARE_METATYPE(pomvar::SniPixmapList)

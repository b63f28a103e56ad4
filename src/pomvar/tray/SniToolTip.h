#pragma once

#include "tray/SniPixmap.h"

#include <QString>

namespace pomvar {

// A tray item's tool tip as StatusNotifierItem hosts read it: (sa(iiay)ss), an icon name, its
// pixmaps, a title and a text.
struct SniToolTip
{
    QString iconName;
    SniPixmapList pixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const SniToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, SniToolTip& toolTip);

} // namespace pomvar

Q_DECLARE_METATYPE(pomvar::SniToolTip)

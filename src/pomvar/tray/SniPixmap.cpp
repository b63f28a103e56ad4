#include "tray/SniPixmap.h"

#include <QDBusArgument>

namespace pomvar {

QDBusArgument& operator<<(QDBusArgument& argument, const SniPixmap& pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SniPixmap& pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

} // namespace pomvar

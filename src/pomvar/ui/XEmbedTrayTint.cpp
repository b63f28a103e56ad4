#include "ui/XEmbedTrayTint.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <xcb/xcb.h>

#include <memory>

namespace pomvar {

const QColor XEmbedTrayTint::lightGlyph(0xf2, 0xf2, 0xf2);
const QColor XEmbedTrayTint::darkGlyph(0x2b, 0x2b, 0x2b);

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name)
{
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 1, uint16_t(name.size()), name.constData()),
            nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

// The screen number of the display the application uses (":0.1" is screen 1).
int screenNumber()
{
    const QByteArray display = qgetenv("DISPLAY");
    const qsizetype dot = display.lastIndexOf('.');
    return dot > display.lastIndexOf(':') ? display.mid(dot + 1).toInt() : 0;
}

} // namespace

QColor XEmbedTrayTint::glyphColour(const QRect& iconGeometry)
{
    if (const std::optional<QColor> foreground = requestedForeground())
        return *foreground;
    if (const std::optional<QColor> behind = background(iconGeometry))
        return forBackground(*behind);
    return {};
}

QColor XEmbedTrayTint::forBackground(const QColor& background)
{
    return background.lightness() < 128 ? lightGlyph : darkGlyph;
}

quint32 XEmbedTrayTint::trayManager()
{
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return 0;
    xcb_connection_t* connection = x11->connection();
    const xcb_atom_t selection =
        atom(connection, QByteArray("_NET_SYSTEM_TRAY_S") + QByteArray::number(screenNumber()));
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(
            connection, xcb_get_selection_owner(connection, selection), nullptr),
        &std::free);
    return owner ? owner->owner : 0;
}

std::optional<QColor> XEmbedTrayTint::requestedForeground()
{
    const xcb_window_t tray = trayManager();
    if (tray == XCB_WINDOW_NONE)
        return std::nullopt;
    xcb_connection_t* connection =
        qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const Reply<xcb_get_property_reply_t> colours(
        xcb_get_property_reply(connection,
                               xcb_get_property(connection,
                                                0,
                                                tray,
                                                atom(connection, "_NET_SYSTEM_TRAY_COLORS"),
                                                XCB_ATOM_CARDINAL,
                                                0,
                                                12),
                               nullptr),
        &std::free);
    // Foreground, error, warning and success, each as red, green and blue of 16 bits.
    if (!colours || colours->format != 32 || colours->value_len < 12)
        return std::nullopt;
    const auto* rgb = static_cast<const uint32_t*>(xcb_get_property_value(colours.get()));
    return QColor::fromRgba64(quint16(rgb[0]), quint16(rgb[1]), quint16(rgb[2]));
}

std::optional<QColor> XEmbedTrayTint::background(const QRect& iconGeometry)
{
    if (!qApp->nativeInterface<QNativeInterface::QX11Application>() || !iconGeometry.isValid() ||
        iconGeometry.isEmpty())
        return std::nullopt;
    QScreen* screen = QGuiApplication::screenAt(iconGeometry.center());
    if (!screen)
        return std::nullopt;
    const QPoint origin = iconGeometry.topLeft() - screen->geometry().topLeft();
    const QImage shot =
        screen->grabWindow(0, origin.x(), origin.y(), iconGeometry.width(), iconGeometry.height())
            .toImage();
    if (shot.isNull())
        return std::nullopt;
    int red = 0, green = 0, blue = 0;
    const int right = shot.width() - 1, bottom = shot.height() - 1;
    for (const QPoint corner :
         { QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom) }) {
        const QColor pixel = shot.pixelColor(corner);
        red += pixel.red();
        green += pixel.green();
        blue += pixel.blue();
    }
    return QColor(red / 4, green / 4, blue / 4);
}

} // namespace pomvar

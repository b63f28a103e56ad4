#pragma once

#include <QColor>
#include <QRect>

#include <optional>

namespace pomvar {

// The colour of the tray icon's glyph in an XEmbed tray: the foreground the tray asks for with
// _NET_SYSTEM_TRAY_COLORS where it sets it; otherwise light on a dark tray and dark on a light
// one, the tray's background read from the screen at the icon's corners (the glyph leaves
// them to the background, whatever visual the tray embeds icons with).
class XEmbedTrayTint
{
public:
    static const QColor lightGlyph;
    static const QColor darkGlyph;

    // Invalid when not on X11 or when the icon is not in a tray.
    static QColor glyphColour(const QRect& iconGeometry);
    // The glyph colour for a background colour.
    static QColor forBackground(const QColor& background);
    // The XEmbed tray's manager window on the default screen, 0 when there is none.
    static quint32 trayManager();
    // The normal foreground of _NET_SYSTEM_TRAY_COLORS on that window.
    static std::optional<QColor> requestedForeground();
    // The background the tray shows around the icon: the mean of its corner pixels.
    static std::optional<QColor> background(const QRect& iconGeometry);
};

} // namespace pomvar

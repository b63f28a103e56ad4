#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QString>

class QPalette;

namespace pomvar {

// The artwork compiled into the program. Template glyphs are drawn in `currentColor`, which is
// replaced by the colour asked for (the palette's text colour, white on a highlight), so one
// file serves the light and the dark appearance.
class Assets
{
public:
    // A rendering of the asset `name` at `size` logical pixels for a display of `dpr`.
    static QPixmap pixmap(const QString& name, QSize size, qreal dpr, const QColor& tint = {});
    // The size the asset's artwork is drawn for.
    static QSize naturalSize(const QString& name);
    // An icon with Normal, Active and Selected modes tinted for the palette.
    static QIcon icon(const QString& name, const QPalette& palette);
    // The tray icon: the symbolic glyph in `colour`.
    static QIcon trayIcon(const QColor& colour);
    // True when the palette's window colour is dark.
    static bool isDark(const QPalette& palette);

private:
    static QByteArray source(const QString& name, const QColor& tint);
};

} // namespace pomvar

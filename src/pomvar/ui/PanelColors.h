#pragma once

#include <QColor>

class QPainter;
class QPalette;
class QRectF;

namespace pomvar {

// The panel's own colours, each for the palette's light or dark appearance.
class PanelColors
{
public:
    // The "secondary" label colour that the button backgrounds are made of, at `opacity`.
    static QColor secondary(const QPalette& palette, qreal opacity);
    // The selector column: grey at opacity 0.3 over the window.
    static QColor menuSelectorBackground(const QPalette& palette);
    static QColor title(const QPalette& palette);

    // Fills a rounded rectangle, antialiased and without an outline.
    static void fillRoundedRect(QPainter& painter,
                                const QRectF& rect,
                                const QColor& color,
                                qreal radius);
};

} // namespace pomvar

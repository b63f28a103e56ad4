#pragma once

#include <QRect>

class QPainter;
class QPalette;

namespace pomvar {

// The look of the control bar's buttons: padding v at both sides, a faint fill that darkens
// while pressed, corners of v (at most half the height). The labelled buttons (Search,
// Organize) use v = 14, the control menu's image button v = 4 and at most 40 of width.
class ControlButtonStyle
{
public:
    static const ControlButtonStyle labelled;
    static const ControlButtonStyle image;

    int spacing;
    int maxWidth;

    static qreal backgroundOpacity(bool pressed) { return pressed ? 0.4 : 0.15; }
    // Fills `bounds`, cut to the style's maximum width, and returns the filled rectangle.
    QRect paintBackground(QPainter& painter,
                          const QRect& bounds,
                          bool pressed,
                          const QPalette& palette) const;
};

} // namespace pomvar

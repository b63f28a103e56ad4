#pragma once

#include <QRect>

class QPainter;
class QPalette;

namespace pomvar {

// The look of the control menu's image button: at most 40 wide, padding v at both sides, a
// faint fill that darkens while pressed, corners of v. v is 4, as on current desktops.
class ControlMenuButtonStyle
{
public:
    static constexpr int spacing = 4;
    static constexpr int maxWidth = 40;

    static qreal backgroundOpacity(bool pressed) { return pressed ? 0.4 : 0.15; }
    static void paintBackground(QPainter& painter,
                                const QRect& bounds,
                                bool pressed,
                                const QPalette& palette);
};

} // namespace pomvar

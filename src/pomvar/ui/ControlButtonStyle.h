#pragma once

#include <QRect>

class QPainter;
class QPalette;

namespace pomvar {

// The look of the Search and Organize buttons: padding v at both sides, a faint fill that
// darkens while pressed, corners of v. v is 14, as on current desktops.
class ControlButtonStyle
{
public:
    static constexpr int spacing = 14;

    static qreal backgroundOpacity(bool pressed) { return pressed ? 0.4 : 0.15; }
    static void paintBackground(QPainter& painter,
                                const QRect& bounds,
                                bool pressed,
                                const QPalette& palette);
};

} // namespace pomvar

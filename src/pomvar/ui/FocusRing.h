#pragma once

#include <QRect>

class QPainter;
class QPalette;

namespace pomvar {

// The keyboard focus on the panel's buttons: a rounded outline in the highlight colour, drawn
// inside the button's bounds.
class FocusRing
{
public:
    static void paint(QPainter& painter, const QRect& bounds, const QPalette& palette, int radius);
};

} // namespace pomvar

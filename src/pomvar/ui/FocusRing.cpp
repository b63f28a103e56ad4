#include "ui/FocusRing.h"

#include <QPainter>
#include <QPalette>

namespace pomvar {

void FocusRing::paint(QPainter& painter, const QRect& bounds, const QPalette& palette, int radius)
{
    constexpr qreal width = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::Active, QPalette::Highlight), width));
    painter.setBrush(Qt::NoBrush);
    const QRectF inside = QRectF(bounds).adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.drawRoundedRect(inside, radius, radius);
    painter.restore();
}

} // namespace pomvar

#include "ui/ControlButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

void ControlButtonStyle::paintBackground(QPainter& painter,
                                         const QRect& bounds,
                                         bool pressed,
                                         const QPalette& palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelColors::secondary(palette, backgroundOpacity(pressed)));
    const qreal radius = std::min<qreal>(spacing, bounds.height() / 2.0);
    painter.drawRoundedRect(QRectF(bounds), radius, radius);
    painter.restore();
}

} // namespace pomvar

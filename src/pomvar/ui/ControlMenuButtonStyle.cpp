#include "ui/ControlMenuButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

void ControlMenuButtonStyle::paintBackground(QPainter& painter,
                                             const QRect& bounds,
                                             bool pressed,
                                             const QPalette& palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelColors::secondary(palette, backgroundOpacity(pressed)));
    painter.drawRoundedRect(QRectF(bounds), spacing, spacing);
    painter.restore();
}

} // namespace pomvar

#include "ui/ControlButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

void ControlButtonStyle::paintBackground(QPainter& painter,
                                         const QRect& bounds,
                                         bool pressed,
                                         const QPalette& palette)
{
    const qreal radius = std::min<qreal>(spacing, bounds.height() / 2.0);
    PanelColors::fillRoundedRect(painter,
                                 QRectF(bounds),
                                 PanelColors::secondary(palette, backgroundOpacity(pressed)),
                                 radius);
}

} // namespace pomvar

#include "ui/ControlButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

#include <climits>

namespace pomvar {

const ControlButtonStyle ControlButtonStyle::labelled{ 14, INT_MAX };
const ControlButtonStyle ControlButtonStyle::image{ 4, 40 };

QRect ControlButtonStyle::paintBackground(QPainter& painter,
                                          const QRect& bounds,
                                          bool pressed,
                                          const QPalette& palette) const
{
    const QRect filled(bounds.topLeft(),
                       QSize(std::min(bounds.width(), maxWidth), bounds.height()));
    const qreal radius = std::min<qreal>(spacing, filled.height() / 2.0);
    PanelColors::fillRoundedRect(painter,
                                 QRectF(filled),
                                 PanelColors::secondary(palette, backgroundOpacity(pressed)),
                                 radius);
    return filled;
}

} // namespace pomvar

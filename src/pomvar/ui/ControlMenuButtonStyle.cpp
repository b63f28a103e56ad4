#include "ui/ControlMenuButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

void ControlMenuButtonStyle::paintBackground(QPainter& painter,
                                             const QRect& bounds,
                                             bool pressed,
                                             const QPalette& palette)
{
    PanelColors::fillRoundedRect(painter,
                                 QRectF(bounds),
                                 PanelColors::secondary(palette, backgroundOpacity(pressed)),
                                 spacing);
}

} // namespace pomvar

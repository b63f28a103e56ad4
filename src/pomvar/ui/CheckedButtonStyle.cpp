#include "ui/CheckedButtonStyle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

QRect CheckedButtonStyle::labelRect(const QRect& bounds)
{
    const QSize label(labelWidth, labelHeight);
    return QRect(bounds.center() - QPoint(label.width() / 2, label.height() / 2) + QPoint(1, 1),
                 label);
}

qreal CheckedButtonStyle::backgroundOpacity(bool pressed) const
{
    if (m_isChecked)
        return pressed ? 0.3 : 0.2;
    return pressed ? 0.4 : 0.0;
}

void CheckedButtonStyle::paintBackground(QPainter& painter,
                                         const QRect& bounds,
                                         bool pressed,
                                         const QPalette& palette) const
{
    const qreal opacity = backgroundOpacity(pressed);
    if (opacity == 0.0)
        return;
    PanelColors::fillRoundedRect(
        painter, QRectF(bounds), PanelColors::secondary(palette, opacity), cornerRadius);
}

} // namespace pomvar

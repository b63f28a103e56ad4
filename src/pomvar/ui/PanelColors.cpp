#include "ui/PanelColors.h"

#include <QPainter>

#include "ui/Assets.h"

#include <QPalette>

namespace pomvar {

QColor PanelColors::secondary(const QPalette& palette, qreal opacity)
{
    QColor colour = Assets::isDark(palette) ? QColor::fromRgbF(0.92f, 0.92f, 0.96f)
                                            : QColor::fromRgbF(0.24f, 0.24f, 0.26f);
    colour.setAlphaF(float(0.6 * opacity));
    return colour;
}

QColor PanelColors::menuSelectorBackground(const QPalette& palette)
{
    QColor colour = Assets::isDark(palette) ? QColor::fromRgbF(0.471f, 0.471f, 0.471f)
                                            : QColor::fromRgbF(0.784f, 0.784f, 0.784f);
    colour.setAlphaF(0.3f);
    return colour;
}

QColor PanelColors::title(const QPalette& palette)
{
    return Assets::isDark(palette) ? QColor::fromRgbF(0.608f, 0.608f, 0.608f)
                                   : QColor::fromRgbF(0.357f, 0.357f, 0.4f);
}

void PanelColors::fillRoundedRect(QPainter& painter,
                                  const QRectF& rect,
                                  const QColor& color,
                                  qreal radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

} // namespace pomvar

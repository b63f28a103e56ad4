#include "ui/VStackButtonLabel.h"

#include "ui/Assets.h"
#include "ui/PanelFonts.h"

#include <QPainter>
#include <QPalette>

namespace pomvar {

void VStackButtonLabel::paint(QPainter& painter, const QRect& frame, const QPalette& palette) const
{
    constexpr int iconSide = 22;
    constexpr int gap = 3;
    painter.save();
    painter.setFont(PanelFonts::callout(painter.font()));
    const int textHeight = painter.fontMetrics().height();
    const int top = frame.top() + (frame.height() - iconSide - gap - textHeight) / 2;
    const QColor colour = palette.color(QPalette::Active, QPalette::WindowText);
    const QPoint iconTopLeft(frame.center().x() - iconSide / 2 + 1, top);
    painter.drawPixmap(
        iconTopLeft,
        Assets::pixmap(
            m_icon, QSize(iconSide, iconSide), painter.device()->devicePixelRatioF(), colour));
    painter.setPen(colour);
    const QRect text(frame.left(), top + iconSide + gap, frame.width(), textHeight);
    painter.drawText(text,
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(m_title, Qt::ElideRight, frame.width()));
    painter.restore();
}

} // namespace pomvar

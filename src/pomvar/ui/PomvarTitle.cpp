#include "ui/PomvarTitle.h"

#include "ui/PanelColors.h"

#include <QPainter>

namespace pomvar {

namespace {
// The text sits at the bottom of a 160 high frame and is turned about its own centre, so it
// reaches below the frame by half its width less half its height.
constexpr int kFrameHeight = 160;
} // namespace

PomvarTitle::PomvarTitle(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("pomvarTitle"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFont(titleFont());
    const QFontMetrics metrics(font());
    const int overhang =
        (metrics.horizontalAdvance(QStringLiteral("Pomvar")) - metrics.height()) / 2;
    setFixedHeight(kFrameHeight + std::max(0, overhang));
}

QFont PomvarTitle::titleFont()
{
    QFont font;
    font.setFamilies({ QStringLiteral("Helvetica Neue"),
                       QStringLiteral("Nimbus Sans"),
                       QStringLiteral("Liberation Sans") });
    font.setPixelSize(36);
    return font;
}

void PomvarTitle::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font());
    painter.setPen(PanelColors::title(palette()));
    const QFontMetrics metrics(font());
    const QString text = QStringLiteral("Pomvar");
    const int textWidth = metrics.horizontalAdvance(text);
    const QPointF centre(width() / 2.0, kFrameHeight - metrics.height() / 2.0);
    painter.translate(centre);
    painter.rotate(270);
    painter.drawText(QRectF(-textWidth / 2.0, -metrics.height() / 2.0, textWidth, metrics.height()),
                     Qt::AlignCenter,
                     text);
}

} // namespace pomvar

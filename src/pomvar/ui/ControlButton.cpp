#include "ui/ControlButton.h"

#include "ui/Assets.h"
#include "ui/ControlButtonStyle.h"
#include "ui/FocusRing.h"

#include <QKeyEvent>
#include <QPainter>

namespace pomvar {

namespace {
constexpr int kIconSide = 15;
constexpr int kIconGap = 5;
constexpr int kHeight = 28;
} // namespace

ControlButton::ControlButton(const QString& label, const QString& iconAsset, QWidget* parent)
    : QAbstractButton(parent)
    , m_iconAsset(iconAsset)
{
    setText(label);
    setAccessibleName(label);
    setCursor(Qt::PointingHandCursor);
    // Reached by Tab (a click leaves the focus where it is) and pressed by Space or Enter.
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

ControlButton::ControlButton(const QString& label,
                             const QString& iconAsset,
                             const QFont& font,
                             QWidget* parent)
    : ControlButton(label, iconAsset, parent)
{
    setFont(font);
}

QSize ControlButton::sizeHint() const
{
    const int textWidth = fontMetrics().horizontalAdvance(text());
    return { ControlButtonStyle::labelled.spacing * 2 + kIconSide + kIconGap + textWidth, kHeight };
}

void ControlButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ControlButtonStyle::labelled.paintBackground(painter, rect(), isDown(), palette());
    const QColor colour = palette().color(QPalette::Active, QPalette::WindowText);
    const int contentWidth = kIconSide + kIconGap + fontMetrics().horizontalAdvance(text());
    const int left = (width() - contentWidth) / 2;
    painter.drawPixmap(
        QPoint(left, (height() - kIconSide) / 2),
        Assets::pixmap(m_iconAsset, QSize(kIconSide, kIconSide), devicePixelRatioF(), colour));
    painter.setPen(colour);
    painter.drawText(QRect(left + kIconSide + kIconGap, 0, width(), height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     text());
    if (hasFocus())
        FocusRing::paint(painter, rect(), palette(), height() / 2);
}

void ControlButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace pomvar

#include "ui/AppCatItem.h"

#include "ui/Assets.h"
#include "ui/MenuSelectionColor.h"
#include "ui/PanelColors.h"
#include "ui/RowMetrics.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace pomvar {

AppCatItem::AppCatItem(QString name, bool expanded)
    : m_name(std::move(name))
    , m_expanded(expanded)
{}

AppCatItem::Geometry AppCatItem::geometry(const QRect& row,
                                          const std::optional<UserPrefs>& prefs) const
{
    const int side = RowMetrics::categoryIconSize(prefs);
    Geometry geometry;
    const int left = row.left() + RowMetrics::disclosureWidth + RowMetrics::categoryLeadingPadding +
                     RowMetrics::categoryIconLeadingPadding;
    geometry.icon = QRect(left, row.top() + (row.height() - side) / 2, side, side);
    const int nameLeft = geometry.icon.right() + 1 + RowMetrics::categorySpacing;
    geometry.name = RowMetrics::nameRect(row, nameLeft);
    return geometry;
}

void AppCatItem::paint(QPainter& painter,
                       const QRect& row,
                       bool hovered,
                       const QPalette& palette,
                       const std::optional<UserPrefs>& prefs) const
{
    const MenuSelectionColor selection(hovered);
    const Geometry geometry = this->geometry(row, prefs);
    const bool compact = RowMetrics::isCompact(prefs);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (hovered)
        PanelColors::fillRoundedRect(painter, row, selection.color(palette), 5);
    // The disclosure chevron: pointing right when collapsed, down when expanded.
    const QPointF centre(row.left() + RowMetrics::disclosureWidth / 2.0 + 2,
                         row.center().y() + 0.5);
    QPainterPath chevron;
    if (m_expanded) {
        chevron.moveTo(centre + QPointF(-3.5, -1.75));
        chevron.lineTo(centre + QPointF(0, 1.75));
        chevron.lineTo(centre + QPointF(3.5, -1.75));
    } else {
        chevron.moveTo(centre + QPointF(-1.75, -3.5));
        chevron.lineTo(centre + QPointF(1.75, 0));
        chevron.lineTo(centre + QPointF(-1.75, 3.5));
    }
    QColor chevronColour = selection.foreground(palette);
    if (!hovered)
        chevronColour.setAlphaF(0.6);
    painter.setPen(QPen(chevronColour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(chevron);

    const qreal dpr = painter.device()->devicePixelRatioF();
    painter.drawPixmap(
        geometry.icon.topLeft(),
        Assets::pixmap(compact ? QStringLiteral("appcatSm") : QStringLiteral("appcatLg"),
                       geometry.icon.size(),
                       dpr));
    painter.setPen(selection.foreground(palette));
    const QString text =
        painter.fontMetrics().elidedText(m_name, Qt::ElideRight, geometry.name.width());
    painter.drawText(geometry.name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.restore();
}

} // namespace pomvar

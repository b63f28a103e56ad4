#include "ui/MenuRowPainter.h"

#include "log/Output.h"
#include "ui/Assets.h"
#include "ui/MenuSelectionColor.h"
#include "ui/RowMetrics.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <cmath>

namespace pomvar {

namespace {

// The server guarantees a readable icon file: one that is not is fatal.
[[noreturn]] void unreadableIcon(const QString& path)
{
    fatalStop(concat("AppItem: cannot read the icon file '", path.toStdString(), "'"));
}

QSize iconFileSize(const QImageReader& reader)
{
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        unreadableIcon(reader.fileName());
    return size;
}

} // namespace

MenuRowPainter::MenuRowPainter(QString name, QString iconPath, int leading, int side, int spacing)
    : m_name(std::move(name))
    , m_iconPath(std::move(iconPath))
    , m_leading(leading)
    , m_side(side)
    , m_spacing(spacing)
{}

MenuRowPainter MenuRowPainter::app(QString name,
                                   bool isPinnedApp,
                                   QString iconPath,
                                   Pomvar menu,
                                   const std::optional<UserPrefs>& prefs)
{
    return MenuRowPainter(std::move(name),
                          std::move(iconPath),
                          RowMetrics::appLeadingPadding(menu, isPinnedApp, prefs),
                          RowMetrics::appIconSize(menu, prefs),
                          RowMetrics::appSpacing);
}

MenuRowPainter MenuRowPainter::category(QString name,
                                        bool expanded,
                                        const std::optional<UserPrefs>& prefs)
{
    MenuRowPainter row(std::move(name),
                       {},
                       RowMetrics::disclosureWidth + RowMetrics::categoryLeadingPadding +
                           RowMetrics::categoryIconLeadingPadding,
                       RowMetrics::categoryIconSize(prefs),
                       RowMetrics::categorySpacing);
    row.m_asset =
        RowMetrics::isCompact(prefs) ? QStringLiteral("appcatSm") : QStringLiteral("appcatLg");
    row.m_expanded = expanded;
    return row;
}

MenuRowPainter::Geometry MenuRowPainter::geometry(const QRect& row) const
{
    return geometryFor(
        row, m_iconPath.isEmpty() ? QSize(m_side, m_side) : iconFileSize(QImageReader(m_iconPath)));
}

MenuRowPainter::Geometry MenuRowPainter::geometryFor(const QRect& row, QSize iconSize) const
{
    // The icon is m_side high and keeps the proportions of its file.
    const double ratio = double(iconSize.height()) / double(iconSize.width());
    const int width = int(std::lround(m_side / ratio));
    Geometry geometry;
    geometry.icon =
        QRect(row.left() + m_leading, row.top() + (row.height() - m_side) / 2, width, m_side);
    geometry.name = RowMetrics::nameRect(row, geometry.icon.right() + 1 + m_spacing);
    return geometry;
}

void MenuRowPainter::paint(QPainter& painter,
                           const QRect& row,
                           bool hovered,
                           const QPalette& palette) const
{
    const MenuSelectionColor selection(hovered);
    const qreal dpr = painter.device()->devicePixelRatioF();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(row, selection.color(palette));
    Geometry geometry;
    if (m_iconPath.isEmpty()) {
        QColor chevron = selection.foreground(palette);
        if (!hovered)
            chevron.setAlphaF(0.6);
        paintChevron(painter, row, chevron);
        geometry = this->geometry(row);
        painter.drawPixmap(geometry.icon.topLeft(),
                           Assets::pixmap(m_asset, geometry.icon.size(), dpr));
    } else {
        // One read of the file per paint: its header gives the proportions, then the pixels.
        QImageReader reader(m_iconPath);
        geometry = geometryFor(row, iconFileSize(reader));
        reader.setScaledSize(geometry.icon.size() * dpr);
        QImage icon = reader.read();
        if (icon.isNull())
            unreadableIcon(m_iconPath);
        icon.setDevicePixelRatio(dpr);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(geometry.icon, icon);
    }
    painter.setPen(selection.foreground(palette));
    const QString text =
        painter.fontMetrics().elidedText(m_name, Qt::ElideRight, geometry.name.width());
    painter.drawText(geometry.name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.restore();
}

void MenuRowPainter::paintChevron(QPainter& painter, const QRect& row, const QColor& colour) const
{
    // Pointing right when collapsed, down when expanded.
    const QPointF centre(row.left() + RowMetrics::disclosureWidth / 2.0 + 2,
                         row.center().y() + 0.5);
    static constexpr QPointF points[2][3] = { { { -1.75, -3.5 }, { 1.75, 0 }, { -1.75, 3.5 } },
                                              { { -3.5, -1.75 }, { 0, 1.75 }, { 3.5, -1.75 } } };
    const auto& chevron = points[m_expanded ? 1 : 0];
    QPainterPath path(centre + chevron[0]);
    path.lineTo(centre + chevron[1]);
    path.lineTo(centre + chevron[2]);
    painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
}

} // namespace pomvar

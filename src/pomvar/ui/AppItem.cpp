#include "ui/AppItem.h"

#include "log/Output.h"
#include "ui/MenuSelectionColor.h"
#include "ui/PanelColors.h"
#include "ui/RowMetrics.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

#include <cmath>

namespace pomvar {

namespace {

// Opens the icon file, which the server guarantees: an unreadable one is fatal.
QSize iconFileSize(const QImageReader& reader)
{
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        fatalStop(
            concat("AppItem: cannot read the icon file '", reader.fileName().toStdString(), "'"));
    return size;
}

} // namespace

AppItem::AppItem(QString name, bool isPinnedApp, QString iconPath, Pomvar menu)
    : m_name(std::move(name))
    , m_isPinnedApp(isPinnedApp)
    , m_iconPath(std::move(iconPath))
    , m_menu(menu)
{}

AppItem::Geometry AppItem::geometry(const QRect& row, const std::optional<UserPrefs>& prefs) const
{
    return geometryFor(row, iconFileSize(QImageReader(m_iconPath)), prefs);
}

AppItem::Geometry AppItem::geometryFor(const QRect& row,
                                       QSize fileSize,
                                       const std::optional<UserPrefs>& prefs) const
{
    const int sz = RowMetrics::appIconSize(m_menu, prefs);
    const int lpad = RowMetrics::appLeadingPadding(m_menu, m_isPinnedApp, prefs);
    // r = height / width; the icon is sz high and sz / r wide.
    const double r = double(fileSize.height()) / double(fileSize.width());
    const int width = int(std::lround(sz / r));
    Geometry geometry;
    geometry.icon = QRect(row.left() + lpad, row.top() + (row.height() - sz) / 2, width, sz);
    const int nameLeft = geometry.icon.right() + 1 + RowMetrics::appSpacing;
    geometry.name = RowMetrics::nameRect(row, nameLeft);
    return geometry;
}

void AppItem::paint(QPainter& painter,
                    const QRect& row,
                    bool hovered,
                    const QPalette& palette,
                    const std::optional<UserPrefs>& prefs) const
{
    const MenuSelectionColor selection(hovered);
    // One read of the file per paint: its header gives the proportions, then the pixels.
    QImageReader reader(m_iconPath);
    const Geometry geometry = geometryFor(row, iconFileSize(reader), prefs);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (hovered)
        PanelColors::fillRoundedRect(painter, row, selection.color(palette), 5);

    const qreal dpr = painter.device()->devicePixelRatioF();
    reader.setScaledSize(geometry.icon.size() * dpr);
    QImage icon = reader.read();
    if (icon.isNull())
        fatalStop(concat("AppItem: cannot read the icon file '", m_iconPath.toStdString(), "'"));
    icon.setDevicePixelRatio(dpr);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(geometry.icon, icon);

    painter.setPen(selection.foreground(palette));
    const QString text =
        painter.fontMetrics().elidedText(m_name, Qt::ElideRight, geometry.name.width());
    painter.drawText(geometry.name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.restore();
}

} // namespace pomvar

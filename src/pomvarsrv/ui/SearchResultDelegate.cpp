#include "pomvarsrv/ui/SearchResultDelegate.h"

#include "palette/ReadableColor.h"
#include "pomvarsrv/ui/SearchResults.h"

#include <QApplication>
#include <QPainter>
#include <QPixmapCache>

namespace pomvar::srv {

namespace {

constexpr int kPadding = 10;
// The second line, toward the background.
constexpr double kQuietness = 0.35;

QPixmap iconPixmap(const QString& path, qreal ratio)
{
    QPixmap pixmap;
    if (path.isEmpty() || QPixmapCache::find(path, &pixmap))
        return pixmap;
    pixmap.load(path);
    pixmap.setDevicePixelRatio(ratio);
    QPixmapCache::insert(path, pixmap);
    return pixmap;
}

} // namespace

void SearchResultDelegate::paint(QPainter* painter,
                                 const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    const qreal ratio = painter->device()->devicePixelRatioF();
    const bool large = ratio > 1.0 && !index.data(SearchResults::Icon2xRole).toString().isEmpty();
    const QPixmap icon = iconPixmap(
        index.data(large ? SearchResults::Icon2xRole : SearchResults::IconRole).toString(),
        large ? 2.0 : 1.0);
    const QRect row = option.rect;
    const QRect iconRect(
        row.left() + kPadding, row.top() + (row.height() - kIconSide) / 2, kIconSide, kIconSide);
    if (!icon.isNull())
        painter->drawPixmap(iconRect, icon);

    const bool selected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group =
        option.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled;
    // Both lines read on the row's background, the highlight included.
    const QColor background =
        option.palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
    const QColor text = ReadableColor::on(
        background,
        option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    const QColor quiet = ReadableColor::quieter(background, text, kQuietness);
    const int left = iconRect.right() + kPadding;
    const QRect textRect(left, row.top() + 4, row.right() - left - kPadding, row.height() - 8);
    const QString detail = index.data(SearchResults::DetailRole).toString();
    painter->save();
    QFont nameFont = option.font;
    nameFont.setWeight(QFont::DemiBold);
    painter->setFont(nameFont);
    painter->setPen(text);
    const QFontMetrics nameMetrics(nameFont);
    const Qt::Alignment nameAlignment =
        Qt::AlignLeft | (detail.isEmpty() ? Qt::AlignVCenter : Qt::AlignTop);
    painter->drawText(
        textRect,
        nameAlignment,
        nameMetrics.elidedText(index.data().toString(), Qt::ElideRight, textRect.width()));
    if (!detail.isEmpty()) {
        painter->setFont(option.font);
        painter->setPen(quiet);
        painter->drawText(textRect,
                          Qt::AlignLeft | Qt::AlignBottom,
                          option.fontMetrics.elidedText(detail, Qt::ElideRight, textRect.width()));
    }
    painter->restore();
}

QSize SearchResultDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return { option.rect.width(), kRowHeight };
}

} // namespace pomvar::srv

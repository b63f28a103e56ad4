#include "ui/MenuRowDelegate.h"

#include "model/MenuList.h"
#include "ui/MenuRowPainter.h"
#include "ui/RowMetrics.h"

#include <QPainter>
#include <QTreeView>

namespace pomvar {

namespace {

bool isExpanded(const QModelIndex& index, const QWidget* widget)
{
    const auto* view = qobject_cast<const QTreeView*>(widget);
    return view && view->isExpanded(index);
}

} // namespace

MenuRowDelegate::MenuRowDelegate(Pomvar menu, PrefsSource prefs, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_menu(menu)
    , m_prefs(std::move(prefs))
{}

QString MenuRowDelegate::iconPath(const QModelIndex& index, const QWidget* widget)
{
    const qreal scale = widget ? widget->devicePixelRatioF() : 1.0;
    const int role = scale == 1.0 ? MenuList::IconPathRole : MenuList::IconPath2xRole;
    return index.data(role).toString();
}

int MenuRowDelegate::rowHeight(const QFontMetrics& metrics) const
{
    return std::max(RowMetrics::appIconSize(m_menu, m_prefs()), metrics.height()) +
           2 * RowMetrics::rowVerticalPadding;
}

QRect MenuRowDelegate::labelRect(const QRect& row, const QModelIndex& index) const
{
    if (m_menu != Pomvar::MyApps)
        return row;
    int indent = RowMetrics::myAppsLeadingPadding;
    if (index.parent().isValid())
        indent += RowMetrics::categoryAppLeadingPadding;
    return row.adjusted(indent, 0, 0, 0);
}

QRect MenuRowDelegate::iconRect(const QRect& row,
                                const QModelIndex& index,
                                const QWidget* widget) const
{
    return painterFor(index, widget).geometry(labelRect(row, index)).icon;
}

MenuRowPainter MenuRowDelegate::painterFor(const QModelIndex& index, const QWidget* widget) const
{
    if (index.data(MenuList::IsCategoryRole).toBool())
        return MenuRowPainter::category(
            index.data().toString(), isExpanded(index, widget), m_prefs());
    return MenuRowPainter::app(index.data().toString(),
                               index.data(MenuList::IsPinnedRole).toBool(),
                               iconPath(index, widget),
                               m_menu,
                               m_prefs());
}

void MenuRowDelegate::paint(QPainter* painter,
                            const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const bool hovered = option.state & (QStyle::State_MouseOver | QStyle::State_Selected);
    painter->setFont(option.font);
    painterFor(index, option.widget)
        .paint(*painter, labelRect(option.rect, index), hovered, option.palette);
}

QSize MenuRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return { option.rect.width(), rowHeight(option.fontMetrics) };
}

} // namespace pomvar

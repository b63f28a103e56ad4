#pragma once

#include "ui/MenuRowPainter.h"
#include "ui/Pomvar.h"
#include "wire/Records.h"

#include <QStyledItemDelegate>

#include <functional>
#include <optional>

namespace pomvar {

// Paints the rows of one menu from the menu list's roles with a MenuRowPainter. Every row of a menu
// has the same height, so the views can lay out only what is visible.
class MenuRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using PrefsSource = std::function<const std::optional<UserPrefs>&()>;

    MenuRowDelegate(Pomvar menu, PrefsSource prefs, QObject* parent = nullptr);

    Pomvar menu() const { return m_menu; }

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The rectangle of the row's label inside the view's row rectangle (the My Apps stack and
    // the apps of a category are indented).
    QRect labelRect(const QRect& row, const QModelIndex& index) const;
    // Where the row's icon is drawn, in the view's viewport coordinates.
    QRect iconRect(const QRect& row, const QModelIndex& index, const QWidget* widget) const;
    // The icon file for the row: the 1x file on a display of scale exactly 1, the 2x one otherwise.
    static QString iconPath(const QModelIndex& index, const QWidget* widget);
    int rowHeight(const QFontMetrics& metrics) const;

private:
    MenuRowPainter painterFor(const QModelIndex& index, const QWidget* widget) const;

    Pomvar m_menu;
    PrefsSource m_prefs;
};

} // namespace pomvar

#pragma once

#include <QStyledItemDelegate>

namespace pomvar::srv {

// A search row: the app's 24 px icon (its 48 px file on a scale-2 screen), its name, and below
// it the generic name or comment in a quieter colour; both readable on the row's background,
// the highlight included (ReadableColor).
class SearchResultDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int kIconSide = 24;
    static constexpr int kRowHeight = 44;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace pomvar::srv

#pragma once

#include "ui/MenuRowDelegate.h"

#include <QPersistentModelIndex>
#include <QTreeView>

namespace pomvar {

class MenuList;

// One menu: a virtualised view over a menu list, fed row by row by the list's notifications.
// The view never expands or collapses a category by itself: it asks with categoryToggled and
// the panel stores the new state in the view model, which the view then follows. A row pressed
// and moved further than the drag distance starts a drag (dragStarted), which the panel follows
// from then on (PanelDrag); the view draws where a drop would land (setDropMarker).
class MenuListView : public QTreeView
{
    Q_OBJECT

public:
    MenuListView(Pomvar menu,
                 MenuList& model,
                 MenuRowDelegate::PrefsSource prefs,
                 QWidget* parent = nullptr);

    Pomvar menu() const { return m_menu; }
    MenuList& menuList() const { return m_model; }
    MenuRowDelegate* rowDelegate() const { return m_delegate; }
    // Rows follow the density preference: call after the preferences change.
    void updateRowHeight();
    // In viewport coordinates: a line between rows when `rect` is kDropLine high, else a frame
    // around a row; a null rect draws nothing.
    void setDropMarker(const QRect& rect);
    static constexpr int kDropLine = 2;

Q_SIGNALS:
    void appActivated(const QModelIndex& index);
    void categoryToggled(const QModelIndex& index, bool expanded);
    void rowContextMenuRequested(const QModelIndex& index, const QPoint& globalPos);
    // `hotSpot`: where the row was pressed, in the row; `globalPos`: the pointer now.
    void dragStarted(const QModelIndex& index, const QPoint& hotSpot, const QPoint& globalPos);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Rows are the delegate's alone: no style row panel, no focus frame.
    void drawRow(QPainter* painter,
                 const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;

private:
    void activate(const QModelIndex& index);
    void highlight(const QModelIndex& index);

    Pomvar m_menu;
    MenuList& m_model;
    MenuRowDelegate* m_delegate;
    QPersistentModelIndex m_pressed;
    QPoint m_pressedAt;
    QRect m_dropMarker;
};

} // namespace pomvar

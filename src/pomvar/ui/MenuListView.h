#pragma once

#include "ui/MenuRowDelegate.h"

#include <QPersistentModelIndex>
#include <QTreeView>

namespace pomvar {

class MenuList;

// One menu: a virtualised view over a menu list, fed row by row by the list's notifications.
// The view never expands or collapses a category by itself: it asks with categoryToggled and
// the panel stores the new state in the view model, which the view then follows.
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

Q_SIGNALS:
    void appActivated(const QModelIndex& index);
    void categoryToggled(const QModelIndex& index, bool expanded);
    void rowContextMenuRequested(const QModelIndex& index, const QPoint& globalPos);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
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
};

} // namespace pomvar

#pragma once

#include <QStackedWidget>

namespace pomvar {

class MenuListView;

// One menu as the panel stacks it: its rows, or its empty state while the list is empty.
class MenuPage : public QStackedWidget
{
    Q_OBJECT

public:
    // `emptyState` may be null: the menu then shows an empty list.
    MenuPage(MenuListView* view, QWidget* emptyState, QWidget* parent = nullptr);

    MenuListView* view() const { return m_view; }
    bool isShowingEmptyState() const;

private:
    void follow();

    MenuListView* m_view;
    QWidget* m_emptyState;
};

} // namespace pomvar

#include "ui/MenuPage.h"

#include "model/MenuList.h"
#include "ui/MenuListView.h"

namespace pomvar {

MenuPage::MenuPage(MenuListView* view, QWidget* emptyState, QWidget* parent)
    : QStackedWidget(parent)
    , m_view(view)
    , m_emptyState(emptyState)
{
    addWidget(m_view);
    if (m_emptyState) {
        addWidget(m_emptyState);
        const MenuList* list = &m_view->menuList();
        connect(list, &QAbstractItemModel::rowsInserted, this, &MenuPage::follow);
        connect(list, &QAbstractItemModel::modelReset, this, &MenuPage::follow);
    }
    follow();
}

bool MenuPage::isShowingEmptyState() const
{
    return m_emptyState && currentWidget() == m_emptyState;
}

void MenuPage::follow()
{
    if (!m_emptyState)
        return;
    setCurrentWidget(m_view->menuList().isEmpty() ? m_emptyState : static_cast<QWidget*>(m_view));
}

} // namespace pomvar

#pragma once

#include "model/TreeItem.h"

#include <QMenu>

#include <functional>
#include <string>

namespace pomvar {

class PomvarViewModel;

// The secondary-click menu of an app row: open, get info, pin or unpin, its categories, and
// organize. Entries that leave the panel close it before they act; entries that change pins or
// categories keep it open and save the expansion state before the menus refresh.
class AppContextMenu : public QMenu
{
    Q_OBJECT

public:
    AppContextMenu(PomvarViewModel& vm,
                   std::function<void()> dismiss,
                   TreeItem item,
                   std::function<void(const std::string&)> launchApp,
                   QWidget* parent = nullptr);

    QMenu* appCategoriesMenu() const { return m_appCategories; }

private:
    void addAppCategories();
    void saveExpansionAndRefresh();

    PomvarViewModel& m_vm;
    std::function<void()> m_dismiss;
    TreeItem m_item;
    std::function<void(const std::string&)> m_launchApp;
    QMenu* m_appCategories = nullptr;
};

} // namespace pomvar

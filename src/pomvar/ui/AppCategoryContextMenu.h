#pragma once

#include "model/TreeItem.h"

#include <QMenu>

#include <functional>

namespace pomvar {

class PomvarViewModel;

// The secondary-click menu of a category row: get info and organize, both closing the panel.
class AppCategoryContextMenu : public QMenu
{
    Q_OBJECT

public:
    AppCategoryContextMenu(PomvarViewModel& vm,
                           std::function<void()> dismiss,
                           TreeItem item,
                           QWidget* parent = nullptr);

private:
    PomvarViewModel& m_vm;
    std::function<void()> m_dismiss;
    TreeItem m_item;
};

} // namespace pomvar

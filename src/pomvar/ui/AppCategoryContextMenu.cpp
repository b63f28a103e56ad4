#include "ui/AppCategoryContextMenu.h"

#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"

namespace pomvar {

AppCategoryContextMenu::AppCategoryContextMenu(PomvarViewModel& vm,
                                               std::function<void()> dismiss,
                                               TreeItem item,
                                               QWidget* parent)
    : QMenu(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
    , m_item(std::move(item))
{
    setObjectName(QStringLiteral("appCategoryContextMenu"));
    QAction* getInfo = addAction(tr("Get Info"));
    connect(getInfo, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::getInfoAppcat(m_item.id));
    });
    QAction* organize = addAction(tr("Organize"));
    connect(organize, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.openOrganizer(OrganizerDlgMode::organize, m_item.id);
    });
}

} // namespace pomvar

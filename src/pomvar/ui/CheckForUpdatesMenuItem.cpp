#include "ui/CheckForUpdatesMenuItem.h"

#include "model/PomvarViewModel.h"
#include "ui/Assets.h"

namespace pomvar {

CheckForUpdatesMenuItem::CheckForUpdatesMenuItem(PomvarViewModel& vm,
                                                 std::function<void()> dismiss,
                                                 QObject* parent)
    : QAction(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
{
    setObjectName(QStringLiteral("checkForUpdatesMenuItem"));
    refresh(m_vm.isUpdateAvailable());
    connect(
        &m_vm, &PomvarViewModel::isUpdateAvailableChanged, this, &CheckForUpdatesMenuItem::refresh);
    connect(this, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.checkUpdates();
    });
}

void CheckForUpdatesMenuItem::refresh(bool updateAvailable)
{
    if (updateAvailable) {
        setText(tr("Install Pomvar Update"));
        QIcon badge;
        badge.addPixmap(Assets::pixmap(QStringLiteral("menuItemBadge"), QSize(16, 16), 1.0));
        badge.addPixmap(Assets::pixmap(QStringLiteral("menuItemBadge"), QSize(16, 16), 2.0));
        setIcon(badge);
    } else {
        setText(tr("Check For Updates"));
        setIcon({});
    }
}

} // namespace pomvar

#include "ui/ControlMenuEntries.h"

#include "model/PomvarViewModel.h"
#include "ui/CheckForUpdatesMenuItem.h"
#include "wire/Protocol.h"

namespace pomvar {

ControlMenuEntries::ControlMenuEntries(PomvarViewModel& vm,
                                       std::function<void()> dismiss,
                                       std::function<void()> terminate,
                                       QWidget* parent)
    : QMenu(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
    , m_terminate(std::move(terminate))
{
    QAction* settings = addAction(tr("Settings…"));
    settings->setObjectName(QStringLiteral("settingsMenuItem"));
    connect(settings, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.settings();
    });
    QAction* about = addAction(tr("About…"));
    about->setObjectName(QStringLiteral("aboutMenuItem"));
    connect(about, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::plain(request::about));
    });
    addAction(new CheckForUpdatesMenuItem(m_vm, m_dismiss, this));
    addSeparator();
    QAction* quit = addAction(tr("Quit"));
    quit->setObjectName(QStringLiteral("quitMenuItem"));
    connect(quit, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::plain(request::quit));
        if (m_terminate)
            m_terminate();
    });
}

} // namespace pomvar

#include "ui/MenuBarScene.h"

#include "model/PomvarViewModel.h"
#include "ui/ControlMenuEntries.h"
#include "ui/PanelWindow.h"
#include "ui/TrayIcon.h"
#include "wire/Protocol.h"

namespace pomvar {

MenuBarScene::MenuBarScene(PomvarViewModel& vm, std::function<void()> terminate, QObject* parent)
    : QObject(parent)
    , m_tray(new TrayIcon(this))
    , m_panel(std::make_unique<PanelWindow>(vm, terminate))
    , m_trayMenu(std::make_unique<ControlMenuEntries>(
          vm,
          [this] { m_panel->dismiss(); },
          std::move(terminate)))
{
    m_trayMenu->setObjectName(QStringLiteral("trayMenu"));
    m_tray->setContextMenu(m_trayMenu.get());
    connect(m_tray, &TrayIcon::clicked, m_panel.get(), &PanelWindow::toggle);
    // A middle click asks for the search window, as the panel's Search button does.
    connect(m_tray, &TrayIcon::searchRequested, this, [this, &vm] {
        m_panel->dismiss();
        vm.sendMessage(request::plain(request::appSearch));
    });
}

MenuBarScene::~MenuBarScene() = default;

} // namespace pomvar

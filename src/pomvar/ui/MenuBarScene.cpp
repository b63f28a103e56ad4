#include "ui/MenuBarScene.h"

#include "ui/PanelWindow.h"
#include "ui/TrayIcon.h"

namespace pomvar {

MenuBarScene::MenuBarScene(PomvarViewModel& vm, std::function<void()> terminate, QObject* parent)
    : QObject(parent)
    , m_tray(new TrayIcon(this))
    , m_panel(std::make_unique<PanelWindow>(vm, std::move(terminate)))
{
    connect(m_tray, &TrayIcon::clicked, m_panel.get(), &PanelWindow::toggle);
}

MenuBarScene::~MenuBarScene() = default;

} // namespace pomvar

#include "ui/MenuBarScene.h"

#include "model/PomvarViewModel.h"
#include "ui/ControlMenuEntries.h"
#include "ui/PanelWindow.h"
#include "ui/TrayIcon.h"
#include "wire/Protocol.h"

namespace pomvar {

MenuBarScene::MenuBarScene(std::function<PomvarViewModel&()> vm,
                           std::function<void()> terminate,
                           QObject* parent)
    : QObject(parent)
    , m_vm(std::move(vm))
    , m_terminate(std::move(terminate))
    , m_tray(new TrayIcon(this))
{
    connect(
        m_tray, &TrayIcon::clicked, this, [this](const QRect& anchor) { panel()->toggle(anchor); });
    // A middle click asks for the search window, as the panel's Search button does.
    connect(m_tray, &TrayIcon::searchRequested, this, [this] {
        panel()->dismiss();
        m_vm().sendMessage(request::plain(request::appSearch));
    });
}

void MenuBarScene::show()
{
    m_tray->show();
    QMetaObject::invokeMethod(this, &MenuBarScene::build, Qt::QueuedConnection);
}

MenuBarScene::~MenuBarScene() = default;

PanelWindow* MenuBarScene::panel()
{
    build();
    return m_panel.get();
}

ControlMenuEntries* MenuBarScene::trayMenu()
{
    build();
    return m_trayMenu.get();
}

void MenuBarScene::build()
{
    if (m_panel)
        return;
    PomvarViewModel& vm = m_vm();
    m_panel = std::make_unique<PanelWindow>(vm, m_terminate);
    m_trayMenu = std::make_unique<ControlMenuEntries>(
        vm, [this] { m_panel->dismiss(); }, m_terminate);
    m_trayMenu->setObjectName(QStringLiteral("trayMenu"));
    m_tray->setContextMenu(m_trayMenu.get());
}

} // namespace pomvar

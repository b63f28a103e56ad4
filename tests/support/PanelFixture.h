#pragma once

#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "IconFiles.h"
#include "model/PomvarViewModel.h"
#include "ui/MenuBarScene.h"
#include "ui/MenuListView.h"
#include "ui/PanelWindow.h"
#include "ui/PomvarView.h"

#include <QMenu>

namespace pomvar::test {

// A view model on an in-process fake runtime server, and the tray scene on top of it.
class PanelFixture
{
public:
    PanelFixture();

    FakeRuntimeServer& server() { return m_server; }
    FakeMenus& menus() { return m_menus; }
    const IconFiles& icons() const { return m_icons; }
    void setPrefs(const nlohmann::json& prefs)
    {
        m_server.setDefaultReply("get-user-prefs", FakeRuntimeServer::Reply::json(prefs));
    }

    // Creates the view model and the scene with what the menus and preferences hold now.
    void start();
    PomvarViewModel& vm() { return *m_vm; }
    PanelWindow& panel() { return *m_scene->panel(); }
    PomvarView& view() { return *panel().view(); }
    MenuListView& menuView(int menu) { return *view().menuView(static_cast<Pomvar>(menu)); }
    int terminateCalls() const { return m_terminateCalls; }

    // A click on the tray icon; true when the panel is open afterwards.
    bool clickTray();
    QModelIndex rowOf(MenuListView& view, const std::string& id);
    // Secondary click on a row, as the window system delivers it; the context menu opened.
    QMenu* openContextMenu(MenuListView& view, const QModelIndex& index);

    // Arms a check that the panel closes before any further request reaches the server.
    void expectDismissFirst();
    // After the action: true when the panel closed and no request had arrived by then.
    bool dismissedFirst() const { return m_dismissed && !m_requestBeforeDismiss; }
    // The request texts that arrived since `from`, waiting for `count` of them.
    std::vector<std::string> requestsSince(std::size_t from, std::size_t count);

private:
    IconFiles m_icons;
    FakeRuntimeServer m_server;
    FakeMenus m_menus;
    std::unique_ptr<PomvarViewModel> m_vm;
    std::unique_ptr<MenuBarScene> m_scene;
    int m_terminateCalls = 0;
    bool m_dismissed = false;
    bool m_requestBeforeDismiss = false;
};

} // namespace pomvar::test

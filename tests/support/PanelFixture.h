#pragma once

#include "FakeMenus.h"
#include "IconFiles.h"
#include "model/PomvarViewModel.h"
#include "ui/MenuBarScene.h"
#include "ui/MenuListView.h"
#include "ui/PanelWindow.h"
#include "ui/PomvarView.h"
#include "ui/TrayIcon.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

namespace pomvar::test {

// A view model on an in-process fake runtime server, and the tray scene on top of it. Header
// only: its users link the panel's library, which the support libraries do not.
class PanelFixture
{
public:
    FakeRuntimeServer& server() { return m_server; }
    FakeMenus& menus() { return m_menus; }
    const IconFiles& icons() const { return m_icons; }
    void setPrefs(const nlohmann::json& prefs)
    {
        m_server.setDefaultReply("get-user-prefs", FakeRuntimeServer::Reply::json(prefs));
    }

    // Creates the view model and the scene with what the menus and preferences hold now.
    void start()
    {
        m_menus.install(m_server);
        m_vm = std::make_unique<PomvarViewModel>(PomvarRT{ "localhost", m_server.port() });
        m_scene = std::make_unique<MenuBarScene>([this]() -> PomvarViewModel& { return *m_vm; },
                                                 [this] { ++m_terminateCalls; });
        m_scene->show();
    }
    PomvarViewModel& vm() { return *m_vm; }
    MenuBarScene& scene() { return *m_scene; }
    PanelWindow& panel() { return *m_scene->panel(); }
    PomvarView& view() { return *panel().view(); }
    MenuListView& menuView(int menu) { return *view().menuView(static_cast<Pomvar>(menu)); }
    int terminateCalls() const { return m_terminateCalls; }

    // A click on the tray icon; true when the panel is open afterwards.
    bool clickTray()
    {
        Q_EMIT m_scene->trayIcon()->icon()->activated(QSystemTrayIcon::Trigger);
        return panel().isVisible();
    }

    static QModelIndex rowOf(MenuListView& view, const std::string& id)
    {
        const QAbstractItemModel& model = *view.model();
        const auto flags = Qt::MatchExactly | Qt::MatchRecursive;
        return model
            .match(model.index(0, 0), MenuList::IdRole, QString::fromStdString(id), 1, flags)
            .value(0);
    }

    // Secondary click on a row, as the window system delivers it; the context menu opened.
    static QMenu* openContextMenu(MenuListView& view, const QModelIndex& index)
    {
        view.scrollTo(index);
        const QPoint inWindow =
            view.viewport()->mapTo(view.window(), view.visualRect(index).center());
        QTest::mouseClick(view.window()->windowHandle(), Qt::RightButton, {}, inWindow);
        // The menu opens from the window system's context-menu event, delivered on the event loop.
        const bool opened =
            QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }, 2000);
        return opened ? qobject_cast<QMenu*>(QApplication::activePopupWidget()) : nullptr;
    }

    // Runs the action: true when it closed the panel before any request arrived, and `request`
    // arrived afterwards.
    bool dismissedBeforeRequest(const std::string& request, const std::function<void()>& action)
    {
        const std::size_t armedAt = m_server.requests().size();
        bool dismissed = false, requestFirst = false;
        const auto connection = QObject::connect(&panel(), &PanelWindow::dismissed, [&] {
            // Had the request been sent before the panel closed, it would arrive now.
            if (!std::exchange(dismissed, true))
                requestFirst = m_server.waitForRequests(armedAt + 1, 300);
        });
        action();
        QObject::disconnect(connection);
        // Other requests may go first (the search's place before "app-search").
        const bool sent = QTest::qWaitFor([&] {
            const std::vector<std::string> all = m_server.requests();
            return std::count(all.begin() + std::ptrdiff_t(armedAt), all.end(), request) > 0;
        });
        return dismissed && !requestFirst && sent;
    }

private:
    IconFiles m_icons;
    FakeRuntimeServer m_server;
    FakeMenus m_menus;
    std::unique_ptr<PomvarViewModel> m_vm;
    std::unique_ptr<MenuBarScene> m_scene;
    int m_terminateCalls = 0;
};

} // namespace pomvar::test

#include "PanelFixture.h"

#include "model/MenuList.h"
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

PanelFixture::PanelFixture()
{
    if (!m_server.listen())
        qFatal("PanelFixture: the fake runtime server cannot listen");
}

PanelFixture::~PanelFixture()
{
    m_scene.reset();
    m_vm.reset();
}

void PanelFixture::setPrefs(const nlohmann::json& prefs)
{
    m_server.setDefaultReply("get-user-prefs", FakeRuntimeServer::Reply::json(prefs));
}

void PanelFixture::start()
{
    m_menus.install(m_server);
    m_vm = std::make_unique<PomvarViewModel>(PomvarRT{ "localhost", m_server.port() });
    m_scene = std::make_unique<MenuBarScene>(*m_vm, [this] { ++m_terminateCalls; });
}

PanelWindow& PanelFixture::panel()
{
    return *m_scene->panel();
}

PomvarView& PanelFixture::view()
{
    return *m_scene->panel()->view();
}

bool PanelFixture::clickTray()
{
    Q_EMIT m_scene->trayIcon()->icon()->activated(QSystemTrayIcon::Trigger);
    return panel().isVisible();
}

MenuListView& PanelFixture::menuView(int menu)
{
    return *view().menuView(static_cast<Pomvar>(menu));
}

QModelIndex PanelFixture::rowOf(MenuListView& view, const std::string& id)
{
    const QString key = QString::fromStdString(id);
    QAbstractItemModel* model = view.model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex top = model->index(row, 0);
        if (top.data(MenuList::IdRole).toString() == key)
            return top;
        for (int child = 0; child < model->rowCount(top); ++child) {
            const QModelIndex index = model->index(child, 0, top);
            if (index.data(MenuList::IdRole).toString() == key)
                return index;
        }
    }
    return {};
}

QMenu* PanelFixture::openContextMenu(MenuListView& view, const QModelIndex& index)
{
    view.scrollTo(index);
    const QPoint inViewport = view.visualRect(index).center();
    const QPoint inWindow = view.viewport()->mapTo(view.window(), inViewport);
    QTest::mouseClick(view.window()->windowHandle(), Qt::RightButton, {}, inWindow);
    // The menu opens from the window system's context-menu event, delivered on the event loop.
    QMenu* menu = nullptr;
    for (int i = 0; i < 100 && !menu; ++i) {
        menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            QTest::qWait(20);
    }
    return menu;
}

void PanelFixture::expectDismissFirst()
{
    m_armedAt = m_server.requests().size();
    m_dismissed = false;
    m_requestBeforeDismiss = false;
    QObject::disconnect(&panel(), &PanelWindow::dismissed, nullptr, nullptr);
    QObject::connect(&panel(), &PanelWindow::dismissed, [this] {
        if (m_dismissed)
            return;
        m_dismissed = true;
        // Had the request been sent before the panel closed, it would arrive now.
        m_requestBeforeDismiss = m_server.waitForRequests(m_armedAt + 1, 300);
    });
}

std::vector<std::string> PanelFixture::requestsSince(std::size_t from, std::size_t count)
{
    m_server.waitForRequests(from + count);
    const std::vector<std::string> all = m_server.requests();
    return { all.begin() + std::ptrdiff_t(std::min(from, all.size())), all.end() };
}

} // namespace pomvar::test

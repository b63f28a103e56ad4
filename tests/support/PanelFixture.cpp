#include "PanelFixture.h"

#include "ui/TrayIcon.h"

#include <QApplication>
#include <QTest>

namespace pomvar::test {

PanelFixture::PanelFixture()
{
    if (!m_server.listen())
        qFatal("PanelFixture: the fake runtime server cannot listen");
}

void PanelFixture::start()
{
    m_menus.install(m_server);
    m_vm = std::make_unique<PomvarViewModel>(PomvarRT{ "localhost", m_server.port() });
    m_scene = std::make_unique<MenuBarScene>(*m_vm, [this] { ++m_terminateCalls; });
}

bool PanelFixture::clickTray()
{
    Q_EMIT m_scene->trayIcon()->icon()->activated(QSystemTrayIcon::Trigger);
    return panel().isVisible();
}

QModelIndex PanelFixture::rowOf(MenuListView& view, const std::string& id)
{
    const QModelIndexList found = view.model()->match(view.model()->index(0, 0),
                                                      MenuList::IdRole,
                                                      QString::fromStdString(id),
                                                      1,
                                                      Qt::MatchExactly | Qt::MatchRecursive);
    return found.value(0);
}

QMenu* PanelFixture::openContextMenu(MenuListView& view, const QModelIndex& index)
{
    view.scrollTo(index);
    const QPoint inWindow = view.viewport()->mapTo(view.window(), view.visualRect(index).center());
    QTest::mouseClick(view.window()->windowHandle(), Qt::RightButton, {}, inWindow);
    // The menu opens from the window system's context-menu event, delivered on the event loop.
    for (int i = 0; i < 100 && !QApplication::activePopupWidget(); ++i)
        QTest::qWait(20);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

void PanelFixture::expectDismissFirst()
{
    const std::size_t armedAt = m_server.requests().size();
    m_dismissed = m_requestBeforeDismiss = false;
    QObject::disconnect(&panel(), &PanelWindow::dismissed, nullptr, nullptr);
    QObject::connect(&panel(), &PanelWindow::dismissed, [this, armedAt] {
        // Had the request been sent before the panel closed, it would arrive now.
        if (!std::exchange(m_dismissed, true))
            m_requestBeforeDismiss = m_server.waitForRequests(armedAt + 1, 300);
    });
}

std::vector<std::string> PanelFixture::requestsSince(std::size_t from, std::size_t count)
{
    m_server.waitForRequests(from + count);
    const std::vector<std::string> all = m_server.requests();
    return { all.begin() + std::ptrdiff_t(std::min(from, all.size())), all.end() };
}

} // namespace pomvar::test

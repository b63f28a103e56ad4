#include "pomvarsrv/ui/OrganizerWindow.h"

#include "pomvarsrv/ui/OrganizePane.h"
#include "pomvarsrv/ui/SettingsPane.h"
#include "pomvarsrv/ui/WindowAccessible.h"
#include "pomvarsrv/ui/WindowPresenter.h"

#include <QEvent>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pomvar::srv {

OrganizerWindow::OrganizerWindow(ServerModel& model,
                                 AppPicker::Filter filter,
                                 OrganizeAppPane::GenericName genericName,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_tabs(new QTabWidget(this))
    , m_organize(new OrganizePane(model, filter, this))
    , m_organizeApp(new OrganizeAppPane(model, filter, std::move(genericName), this))
    , m_settings(new SettingsPane(model, AutostartEntry(), this))
{
    WindowAccessible::install();
    setObjectName(QStringLiteral("organizerWindow"));
    setWindowTitle(tr("Pomvar Organizer"));
    setAccessibleName(windowTitle());
    m_tabs->setObjectName(QStringLiteral("organizerPanes"));
    //: The organizer's tabs, as screen readers name them.
    m_tabs->setAccessibleName(tr("Panes"));
    m_tabs->addTab(m_organize, tr("Organize"));
    m_tabs->addTab(m_organizeApp, tr("Organize App"));
    m_tabs->addTab(m_settings, tr("Settings"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    resize(900, 560);
    connect(m_tabs, &QTabWidget::currentChanged, this, &OrganizerWindow::refresh);
    connect(m_organize, &OrganizePane::organizeAppRequested, this, [this](const QString& appkey) {
        present(1, appkey);
    });
    connect(m_organizeApp, &OrganizeAppPane::infoRequested, this, &OrganizerWindow::infoRequested);
    connect(m_organizeApp, &OrganizeAppPane::editRequested, this, &OrganizerWindow::editRequested);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
}

int OrganizerWindow::pane() const
{
    return m_tabs->currentIndex();
}

void OrganizerWindow::present(int pane, const QString& itemkey)
{
    pane = std::clamp(pane, 0, 2);
    {
        const QSignalBlocker quiet(m_tabs);
        m_tabs->setCurrentIndex(pane);
    }
    refresh();
    if (pane == 0)
        m_organize->selectCategory(itemkey);
    else if (pane == 1)
        m_organizeApp->setApp(itemkey);
    WindowPresenter::present(*this);
    if (pane != 0)
        m_tabs->currentWidget()->setFocus();
}

void OrganizerWindow::refresh()
{
    m_organize->refresh();
    m_organizeApp->refresh();
    m_settings->refresh();
}

bool OrganizerWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        refresh();
    if (event->type() == QEvent::Close)
        m_settings->forgetUndo();
    return QWidget::event(event);
}

} // namespace pomvar::srv

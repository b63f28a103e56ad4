#include "pomvarsrv/ui/UpdatesWindow.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace pomvar::srv {

UpdatesWindow::UpdatesWindow(QWidget* parent)
    : ServerWindow(QStringLiteral("updatesWindow"), parent)
    , m_text(textLabel(QStringLiteral("updatesText")))
{
    setTitle(tr("Pomvar Updates"));
    QLabel* icon = pomvarIconLabel(QStringLiteral("updatesIcon"));
    m_text->setMinimumWidth(300);
    auto* row = new QHBoxLayout;
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(m_text, 1);
    body()->addLayout(row);
    m_close = addButton(tr("&Close"), QStringLiteral("close"));
    m_restart = addButton(tr("&Restart Pomvar"), QStringLiteral("restartPomvar"));
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_restart, &QPushButton::clicked, this, &UpdatesWindow::restartRequested);
}

void UpdatesWindow::showState(const QString& running, const QString& newer, bool restarting)
{
    m_restart->setVisible(!newer.isEmpty());
    m_restart->setEnabled(!restarting);
    m_close->setEnabled(!restarting);
    if (restarting)
        m_text->setText(tr("Pomvar restarts as soon as its panel has closed."));
    else if (newer.isEmpty())
        m_text->setText(tr("Pomvar %1 is up to date.").arg(running));
    else
        m_text->setText(tr("Pomvar %1 is installed. Restart to use it.").arg(newer));
    (newer.isEmpty() ? m_close : m_restart)->setFocus();
}

} // namespace pomvar::srv

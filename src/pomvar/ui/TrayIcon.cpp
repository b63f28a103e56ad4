#include "ui/TrayIcon.h"

#include "ui/Assets.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QTimer>

#include <iostream>

namespace pomvar {

TrayIcon::TrayIcon(QObject* parent)
    : QObject(parent)
    , m_icon(new QSystemTrayIcon(this))
{
    m_icon->setObjectName(QStringLiteral("Pomvar"));
    m_icon->setIcon(Assets::trayIcon(QApplication::palette()));
    m_icon->setToolTip(QStringLiteral("Pomvar"));
    connect(m_icon, &QSystemTrayIcon::activated, this, &TrayIcon::activated);
    qApp->installEventFilter(this);
    showWhenTrayAvailable();
}

void TrayIcon::showWhenTrayAvailable()
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_icon->show();
        return;
    }
    std::cerr << "Pomvar: no system tray is available; the Pomvar icon will appear as soon as "
                 "one starts."
              << std::endl;
    m_trayPoll = new QTimer(this);
    m_trayPoll->setInterval(1000);
    connect(m_trayPoll, &QTimer::timeout, this, [this] {
        if (!QSystemTrayIcon::isSystemTrayAvailable())
            return;
        m_trayPoll->stop();
        m_icon->show();
    });
    m_trayPoll->start();
}

void TrayIcon::activated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger)
        Q_EMIT clicked(m_icon->geometry());
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event)
{
    // The tray follows the desktop's light or dark appearance.
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        m_icon->setIcon(Assets::trayIcon(QApplication::palette()));
    return QObject::eventFilter(watched, event);
}

} // namespace pomvar

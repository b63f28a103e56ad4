#pragma once

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

class QTimer;

namespace pomvar {

// The status icon in the system tray. A click reports the icon's geometry (empty when the tray
// does not tell). Without a tray at start it says so once and shows up when a tray appears.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    explicit TrayIcon(QObject* parent = nullptr);

    QSystemTrayIcon* icon() const { return m_icon; }

Q_SIGNALS:
    void clicked(const QRect& geometry);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showWhenTrayAvailable();
    void activated(QSystemTrayIcon::ActivationReason reason);

    QSystemTrayIcon* m_icon;
    QTimer* m_trayPoll = nullptr;
};

} // namespace pomvar

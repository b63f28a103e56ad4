#include "pomvarsrv/ui/WindowPresenter.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace pomvar::srv {

void WindowPresenter::present(QWidget& window, Placement placement)
{
    if (!window.isVisible()) {
        const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
        if (!screen)
            screen = QGuiApplication::primaryScreen();
        const QRect area = screen->availableGeometry();
        const QPoint centred = area.center() - window.rect().center();
        window.move(placement == Placement::centred
                        ? centred
                        : QPoint(centred.x(), area.top() + area.height() / 3));
    }
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace pomvar::srv

#include "pomvarsrv/ui/WindowPresenter.h"

#include "pomvarsrv/ui/WindowActivation.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace pomvar::srv {

namespace {

QRect availableAt(const QPoint& point)
{
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen->availableGeometry();
}

} // namespace

void WindowPresenter::present(QWidget& window, Placement placement)
{
    if (!window.isVisible()) {
        const QRect area = availableAt(QCursor::pos());
        const QPoint centred = area.center() - window.rect().center();
        window.move(placement == Placement::centred
                        ? centred
                        : QPoint(centred.x(), area.top() + area.height() / 3));
    }
    show(window);
}

void WindowPresenter::presentAt(QWidget& window, const QPoint& topLeft)
{
    const QRect area = availableAt(topLeft);
    const QSize size = window.frameSize();
    window.move(
        std::clamp(
            topLeft.x(), area.left(), std::max(area.left(), area.right() + 1 - size.width())),
        std::clamp(
            topLeft.y(), area.top(), std::max(area.top(), area.bottom() + 1 - size.height())));
    show(window);
}

void WindowPresenter::show(QWidget& window)
{
    window.show();
    window.raise();
    WindowActivation::activate(window);
}

} // namespace pomvar::srv

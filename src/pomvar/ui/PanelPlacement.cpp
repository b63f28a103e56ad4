#include "ui/PanelPlacement.h"

#include <algorithm>

namespace pomvar {

QPoint PanelPlacement::topLeft(QSize panel,
                               const QRect& anchor,
                               QPoint pointer,
                               const QRect& available)
{
    const QRect target =
        anchor.isValid() && !anchor.isEmpty() ? anchor : QRect(pointer, QSize(1, 1));
    int x = target.center().x() - panel.width() / 2;
    int y = 0;
    const bool trayAtTop = target.center().y() < available.center().y();
    const bool trayAtSide =
        target.left() <= available.left() || target.right() >= available.right();
    if (anchor.isValid() && !anchor.isEmpty() && trayAtSide &&
        !(target.top() <= available.top() || target.bottom() >= available.bottom())) {
        // A vertical panel at a screen edge: open beside it.
        x = target.center().x() < available.center().x() ? target.right() + 1 + gap
                                                         : target.left() - gap - panel.width();
        y = target.center().y() - panel.height() / 2;
    } else if (trayAtTop) {
        y = target.bottom() + 1 + gap;
    } else {
        y = target.top() - gap - panel.height();
    }
    x = std::clamp(
        x, available.left(), std::max(available.left(), available.right() + 1 - panel.width()));
    y = std::clamp(
        y, available.top(), std::max(available.top(), available.bottom() + 1 - panel.height()));
    return { x, y };
}

} // namespace pomvar

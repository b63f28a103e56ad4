#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace pomvar {

// Where the panel goes: next to the tray icon, on the side that faces the middle of the screen,
// or under the pointer when the tray gives no geometry; always inside the available area.
class PanelPlacement
{
public:
    static QPoint topLeft(QSize panel, const QRect& anchor, QPoint pointer, const QRect& available);

    static constexpr int gap = 4;
};

} // namespace pomvar

#pragma once

#include <QFont>

namespace pomvar {

// The panel's text styles on top of the widget's default font: the small callout font of the
// Organize label and the selector titles, and the second-level title of the empty states.
class PanelFonts
{
public:
    static constexpr int calloutPixelSize = 12;
    static constexpr int title2PixelSize = 17;

    static QFont callout(QFont base);
    static QFont title2(QFont base);
};

} // namespace pomvar

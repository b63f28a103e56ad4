#include "ui/PanelFonts.h"

namespace pomvar {

QFont PanelFonts::callout(QFont base)
{
    base.setPixelSize(calloutPixelSize);
    return base;
}

QFont PanelFonts::title2(QFont base)
{
    base.setPixelSize(title2PixelSize);
    return base;
}

} // namespace pomvar

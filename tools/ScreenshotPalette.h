#pragma once

#include "Palettes.h"

#include <QApplication>
#include <QString>

namespace pomvar::test {

// Under SCREENSHOTS_PALETTE=dark the shots are taken under a dark palette, as a dark desktop
// theme gives one, and their files are named *-dark.png beside the light ones. Returns the
// files' suffix. Called after the QApplication is made.
inline QString useScreenshotPalette()
{
    if (qgetenv("SCREENSHOTS_PALETTE") != "dark")
        return {};
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(darkPalette());
    return QStringLiteral("-dark");
}

} // namespace pomvar::test

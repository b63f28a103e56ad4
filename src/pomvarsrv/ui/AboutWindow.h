#pragma once

#include "pomvarsrv/ui/ServerWindow.h"

namespace pomvar::srv {

// "About Pomvar": its icon, name and version, what it is, its licence and the libraries it is
// built on with their versions.
class AboutWindow : public ServerWindow
{
    Q_OBJECT

public:
    explicit AboutWindow(QWidget* parent = nullptr);

    // "Qt 6.4.2", "GLib 2.74.6", ...: the versions in use where the library reports its own.
    static QStringList libraries();
};

} // namespace pomvar::srv

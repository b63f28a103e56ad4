#pragma once

#include <QStringList>

namespace pomvar::srv {

// The command line: pomvarsrv [--clear-recent] [--refresh] [--welcome]; `pomvarsrv --search`
// only sends a request (SearchShortcut).
struct ServerOptions
{
    bool clearRecent = false;
    bool refresh = false;
    bool welcome = false;

    // Unknown arguments are logged and ignored.
    static ServerOptions parse(const QStringList& arguments);
    // POMVARSRV_PORT when set to a valid port (for tests), else the runtime port.
    static quint16 port();
};

} // namespace pomvar::srv

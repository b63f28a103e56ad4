#pragma once

#include <QStringList>

#include <sys/types.h>

namespace pomvar::srv {

// The command line: pomvarsrv [--clear-recent] [--refresh] [--welcome]; `pomvarsrv --search`
// only sends a request (SearchShortcut).
struct ServerOptions
{
    bool clearRecent = false;
    bool refresh = false;
    bool welcome = false;
    // The folder the server runs from, where the version file of the installed programs lies;
    // empty: updates are never offered (tests, in-process servers).
    QString installDir;

    // The calculator module (CalculatorModule.h), beside the server; empty: no calculator.
    QString calculatorModule;

    // The front end that started this server; 0 when it was started otherwise.
    pid_t frontEnd = 0;

    // Unknown arguments are logged and ignored.
    static ServerOptions parse(const QStringList& arguments);
    // POMVARSRV_PORT when set to a valid port (for tests), else the runtime port.
    static quint16 port();
    // The front end named in the environment, which is cleared of it: the apps the server
    // starts must not inherit it.
    static pid_t takeFrontEnd();
};

} // namespace pomvar::srv

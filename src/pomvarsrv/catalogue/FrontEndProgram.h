#pragma once

#include <QCoreApplication>
#include <QString>

namespace pomvar::srv {

// What the server starts as Pomvar (the update's restart, the autostart entry) must be the
// installed front end beside it, <prefix>/bin/pomvar for <prefix>/libexec/pomvar/pomvarsrv: a
// regular file of the same owner as the server's own binary, writable by neither its group nor
// others. A file that another user could have put or changed there is never run as Pomvar.
class FrontEndProgram
{
public:
    // Why `program` is not to be started, for the user; empty when it may be. `server`: the
    // running server's binary, whose owner the program must have.
    static QString problem(const QString& program,
                           const QString& server = QCoreApplication::applicationFilePath());
};

} // namespace pomvar::srv

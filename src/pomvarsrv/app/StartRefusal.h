#pragma once

#include "pomvarsrv/ipc/PortHolder.h"

#include <QtGlobal>

#include <sys/types.h>

namespace pomvar::srv {

// When another user or another program holds the runtime port, this server cannot serve, and
// the front end that started it would wait for it forever: the user is told who holds the port,
// on standard error and in a notification, and that front end is ended (SIGTERM: it removes its
// PID file), so that nothing spins and nothing is left behind.
class StartRefusal
{
public:
    static constexpr int kExitStatus = 2;

    // Returns the exit status. Makes the application object itself: nothing else runs.
    static int refuse(const PortHolder& holder,
                      quint16 port,
                      pid_t frontEnd,
                      int argc,
                      char** argv);
};

} // namespace pomvar::srv

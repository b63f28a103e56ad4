#pragma once

namespace pomvar {

// What must be done however the front end ends, once it has marked itself as running: in a
// signal handler, before a deliberate fatal stop, at a refused connection, at exit() (Qt exits
// when the display connection is lost). The cleanup is async-signal-safe and runs at most once.
class ProcessEnd
{
public:
    using Cleanup = void (*)() noexcept;

    // Also runs it at exit().
    static void setCleanup(Cleanup cleanup) noexcept;
    static void cleanUp() noexcept;
};

} // namespace pomvar

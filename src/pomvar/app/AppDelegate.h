#pragma once

namespace pomvar {

// Hooks into the application's life.
class AppDelegate
{
public:
    // Runs when the application terminates in order: removes the PID file.
    void applicationWillTerminate();
};

} // namespace pomvar

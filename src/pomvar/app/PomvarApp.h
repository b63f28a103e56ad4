#pragma once

#include "app/AppDelegate.h"
#include "ipc/PomvarRT.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pomvar {

class PomvarViewModel;

// The application: its construction is the whole start-up sequence. When the constructor
// returns, no other instance runs, the runtime server has been started with the options of
// the command line, the PID file is written and the server's port is in use.
class PomvarApp
{
public:
    // `arguments`: the whole argument vector. May end the process (another instance, help,
    // version, a failing readiness probe). `whileServerStarts` runs once the server is launched,
    // before the probe: work that shows nothing, such as opening the display.
    explicit PomvarApp(std::vector<std::string> arguments,
                       const std::function<void()>& whileServerStarts = {});
    ~PomvarApp();
    PomvarApp(const PomvarApp&) = delete;
    PomvarApp& operator=(const PomvarApp&) = delete;

    // The one view model, created on first use; this opens the connection to the server.
    PomvarViewModel& vm();

    // Orderly end: runs the will-terminate hook, then leaves the event loop, so the process
    // ends with status 0. Without a running event loop it returns after the hook.
    void terminate();

    // <folder of this executable>/../libexec/pomvar/pomvarsrv
    static std::string runtimeServerPath();

private:
    void initExecEnv();
    void launchPomvarRT(const std::vector<std::string>& args);
    void waitForRTStartup();

    const std::vector<std::string> m_arguments;
    AppDelegate m_appDelegate;
    PomvarRT m_srv;
    std::unique_ptr<PomvarViewModel> m_vm;
};

} // namespace pomvar

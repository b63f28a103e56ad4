#pragma once

#include <functional>
#include <string>

namespace pomvar {

// Which Qt platform the front end runs on. Under Wayland it runs on XWayland when an X display
// is there, since a Wayland client cannot put its panel at a global position next to the tray
// icon; without one it runs natively and the compositor places the panel. A platform the user
// chose with QT_QPA_PLATFORM is kept.
class PlatformChoice
{
public:
    // `getenv` reads one environment variable ("" when unset). Returns the platform to ask
    // Qt for, or "" to leave Qt's own choice.
    static std::string platform(const std::function<std::string(const char*)>& getenv);
};

} // namespace pomvar

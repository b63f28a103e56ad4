#include "app/PlatformChoice.h"

namespace pomvar {

std::string PlatformChoice::platform(const std::function<std::string(const char*)>& getenv)
{
    if (!getenv("QT_QPA_PLATFORM").empty())
        return {};
    const bool wayland =
        !getenv("WAYLAND_DISPLAY").empty() || getenv("XDG_SESSION_TYPE") == "wayland";
    return wayland && !getenv("DISPLAY").empty() ? "xcb" : "";
}

} // namespace pomvar

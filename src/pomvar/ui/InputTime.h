#pragma once

#include <optional>
#include <string>

namespace pomvar {

// The time of the user's last key or click in this program, as the window system stamped it,
// for the windows the runtime server opens on the user's behalf: under X11 a window manager
// gives the focus to a window only for a user action more recent than the focus's own.
class InputTime
{
public:
    // Starts noting the times; once per process is enough.
    static void watch();
    // An X11 startup id ending in "_TIME<time>" for the last action; nothing off X11 or before
    // any action.
    static std::optional<std::string> activationToken();
    static std::optional<std::string> activationToken(unsigned long time);
};

} // namespace pomvar

#pragma once

#include <cstdint>

namespace pomvar::srv {

// `pomvarsrv --search`, for a keyboard shortcut: asks the running server for its search window
// over the port, as any client would, and leaves. Runs before Qt starts.
class SearchShortcut
{
public:
    // The exit status: 0 when the request was sent, 1 when no server is listening.
    static int run(std::uint16_t port);
};

} // namespace pomvar::srv

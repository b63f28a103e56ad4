#pragma once

#include <cstdint>

namespace pomvar::srv {

// `pomvarsrv --search`, for a keyboard shortcut: asks the running server for its search window
// over the port, as any client would, and leaves, handing on the activation token it was started
// with. Runs before Qt starts.
class SearchShortcut
{
public:
    // The exit status: 0 when the server took the request, 1 when no server is listening or it
    // did not (it refused this process).
    static int run(std::uint16_t port);
};

} // namespace pomvar::srv

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pomvar::srv {

// The listening sockets on the loopback addresses that "localhost" names (127.0.0.1 and ::1),
// opened with plain system calls before Qt starts, so that the port is taken within a few
// milliseconds of exec: the front end's start-up probe then finds it at its first look.
class LoopbackSockets
{
public:
    enum class Result
    {
        listening,
        portTaken,
        failed,
    };

    // Fills `descriptors` (non-blocking, close-on-exec) when listening; `notes` says which
    // address could not be used and why.
    static Result open(std::uint16_t port, std::vector<int>& descriptors, std::string& notes);
};

} // namespace pomvar::srv

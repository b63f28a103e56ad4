#pragma once

#include <cstdint>
#include <string>

namespace pomvar::srv {

// Who listens on the runtime port when this server cannot: another Pomvar server of this user
// (one that is ending, or serving still: also whatever of this user cannot be named), another
// user's Pomvar (the port is fixed, so one user at a time can run Pomvar on a computer), or
// another program.
struct PortHolder
{
    enum class Kind
    {
        ourServer,
        otherUsersPomvar,
        otherProgram,
    };

    Kind kind = Kind::otherProgram;
    std::string program; // the holder's command name, when it can be known

    static PortHolder of(std::uint16_t port);
    // For the user: "Pomvar cannot start: port 50818 is in use by ...".
    std::string message(std::uint16_t port) const;
};

} // namespace pomvar::srv

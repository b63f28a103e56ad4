#include "pomvarsrv/ipc/PortHolder.h"

#include "pomvarsrv/ipc/SocketDiag.h"
#include "pomvarsrv/ipc/SocketOwner.h"

#include <unistd.h>

namespace pomvar::srv {

namespace {

constexpr const char* kServerCommand = "pomvarsrv";

} // namespace

PortHolder PortHolder::of(std::uint16_t port)
{
    // What cannot be named for sure is taken for a Pomvar server that is ending: the port is
    // tried again, and then left to it. Only what is known to be another user's or another
    // program is refused.
    PortHolder holder{ Kind::ourServer, {} };
    auto listener = SocketDiag::listener(QHostAddress(QHostAddress::LocalHost), port);
    if (!listener)
        listener = SocketDiag::listener(QHostAddress(QHostAddress::LocalHostIPv6), port);
    if (!listener)
        return holder; // let go meanwhile
    if (listener->uid != ::getuid()) {
        // Another user's files cannot be looked into, but their processes' names can be read.
        holder.kind = SocketOwner::runs(listener->uid, kServerCommand) ? Kind::otherUsersPomvar
                                                                       : Kind::otherProgram;
        return holder;
    }
    if (const auto pid = SocketOwner::find(listener->inode)) {
        holder.program = SocketOwner::commandName(*pid);
        if (!holder.program.empty() && holder.program != kServerCommand)
            holder.kind = Kind::otherProgram;
    }
    return holder;
}

std::string PortHolder::message(std::uint16_t port) const
{
    const std::string start =
        "Pomvar cannot start: port " + std::to_string(port) + " is in use by ";
    switch (kind) {
        case Kind::ourServer:
            return start + "Pomvar's runtime server.";
        case Kind::otherUsersPomvar:
            return start + "another user's Pomvar on this computer.";
        case Kind::otherProgram:
            break;
    }
    return start + "another program" + (program.empty() ? "" : " (" + program + ")") + ".";
}

} // namespace pomvar::srv

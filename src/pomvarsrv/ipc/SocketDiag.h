#pragma once

#include <QHostAddress>

#include <optional>

namespace pomvar::srv {

// The kernel's record of one TCP socket, asked for through NETLINK_SOCK_DIAG by the socket's own
// addresses: a hashed lookup that costs the same whatever the size of the socket table, where
// reading /proc/net/tcp costs a pass over every socket of the machine.
class SocketDiag
{
public:
    struct Record
    {
        unsigned uid = 0;             // the owner
        unsigned long long inode = 0; // as /proc/<pid>/fd names it, "socket:[inode]"
    };

    // The connected socket whose local end is `local`:`localPort` and remote end is
    // `remote`:`remotePort`; nothing when there is none (or the kernel does not answer).
    static std::optional<Record> connection(const QHostAddress& local,
                                            quint16 localPort,
                                            const QHostAddress& remote,
                                            quint16 remotePort);
    // The socket listening on `address`:`port`.
    static std::optional<Record> listener(const QHostAddress& address, quint16 port);
};

} // namespace pomvar::srv

#pragma once

#include <QByteArray>
#include <QHostAddress>

#include <optional>

namespace pomvar::srv {

// Who owns the other end of a loopback TCP connection, from the kernel's socket tables
// (/proc/net/tcp and /proc/net/tcp6): the peer's socket is the one whose local end is our
// peer's address and whose remote end is ours.
class PeerCredentials
{
public:
    // Nothing when the socket is not found.
    static std::optional<unsigned> ownerUid(const QHostAddress& peer,
                                            quint16 peerPort,
                                            const QHostAddress& local,
                                            quint16 localPort);

    // The same lookup in the text of one table.
    static std::optional<unsigned> ownerUidIn(const QByteArray& table,
                                              const QHostAddress& peer,
                                              quint16 peerPort,
                                              const QHostAddress& local,
                                              quint16 localPort);
};

} // namespace pomvar::srv

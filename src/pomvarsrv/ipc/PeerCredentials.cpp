#include "pomvarsrv/ipc/PeerCredentials.h"

#include <QFile>
#include <QList>

#include <arpa/inet.h>
#include <cstring>

namespace pomvar::srv {

namespace {

// An address as the kernel prints it: each 32-bit word of the address in memory, as
// eight hex digits of the machine's own integer.
QByteArray tableBytes(const QHostAddress& address)
{
    QByteArray bytes;
    if (address.protocol() == QAbstractSocket::IPv4Protocol) {
        const quint32 word = htonl(address.toIPv4Address());
        bytes.resize(4);
        std::memcpy(bytes.data(), &word, 4);
    } else {
        const Q_IPV6ADDR ip6 = address.toIPv6Address();
        bytes = QByteArray(reinterpret_cast<const char*>(ip6.c), 16);
    }
    return bytes;
}

bool parseEndpoint(const QByteArray& field, QByteArray& address, quint16& port)
{
    const int colon = field.indexOf(':');
    if (colon != 32 && colon != 8)
        return false;
    bool ok = false;
    address.clear();
    for (int i = 0; i < colon; i += 8) {
        const quint32 word = field.mid(i, 8).toUInt(&ok, 16);
        if (!ok)
            return false;
        address.append(reinterpret_cast<const char*>(&word), 4);
    }
    port = static_cast<quint16>(field.mid(colon + 1).toUInt(&ok, 16));
    return ok;
}

} // namespace

std::optional<unsigned> PeerCredentials::ownerUidIn(const QByteArray& table,
                                                    const QHostAddress& peer,
                                                    quint16 peerPort,
                                                    const QHostAddress& local,
                                                    quint16 localPort)
{
    const QByteArray peerBytes = tableBytes(peer);
    const QByteArray localBytes = tableBytes(local);
    const QList<QByteArray> lines = table.split('\n');
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QList<QByteArray> fields = lines[i].simplified().split(' ');
        if (fields.size() < 8)
            continue;
        QByteArray address;
        quint16 port = 0;
        if (!parseEndpoint(fields[1], address, port) || port != peerPort || address != peerBytes)
            continue;
        if (!parseEndpoint(fields[2], address, port) || port != localPort || address != localBytes)
            continue;
        bool ok = false;
        const unsigned uid = fields[7].toUInt(&ok);
        if (ok)
            return uid;
    }
    return std::nullopt;
}

std::optional<unsigned> PeerCredentials::ownerUid(const QHostAddress& peer,
                                                  quint16 peerPort,
                                                  const QHostAddress& local,
                                                  quint16 localPort)
{
    const bool ip4 = peer.protocol() == QAbstractSocket::IPv4Protocol;
    QFile file(ip4 ? QStringLiteral("/proc/net/tcp") : QStringLiteral("/proc/net/tcp6"));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // /proc files report no size: read to the end.
    return ownerUidIn(file.readAll(), peer, peerPort, local, localPort);
}

} // namespace pomvar::srv

#include "pomvarsrv/ipc/SocketDiag.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

// The address as the kernel keeps it: network order, IPv4 in the first word.
bool copyAddress(const QHostAddress& address, __be32 (&to)[4], int& family)
{
    std::memset(to, 0, sizeof to);
    if (address.protocol() == QAbstractSocket::IPv4Protocol) {
        family = AF_INET;
        to[0] = htonl(address.toIPv4Address());
        return true;
    }
    if (address.protocol() == QAbstractSocket::IPv6Protocol) {
        family = AF_INET6;
        const Q_IPV6ADDR bytes = address.toIPv6Address();
        std::memcpy(to, bytes.c, sizeof to);
        return true;
    }
    return false;
}

class NetlinkSocket
{
public:
    NetlinkSocket()
        : m_fd(::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG))
    {}
    ~NetlinkSocket()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    NetlinkSocket(const NetlinkSocket&) = delete;
    NetlinkSocket& operator=(const NetlinkSocket&) = delete;

    // One exact lookup: the kernel answers with the socket or with an error, never a dump.
    std::optional<SocketDiag::Record> ask(const inet_diag_req_v2& request) const
    {
        if (m_fd < 0)
            return std::nullopt;
        struct
        {
            nlmsghdr header;
            inet_diag_req_v2 request;
        } message{};
        message.header.nlmsg_len = sizeof message;
        message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
        message.header.nlmsg_flags = NLM_F_REQUEST;
        message.request = request;
        sockaddr_nl kernel{};
        kernel.nl_family = AF_NETLINK;
        if (::sendto(m_fd,
                     &message,
                     sizeof message,
                     0,
                     reinterpret_cast<const sockaddr*>(&kernel),
                     sizeof kernel) != ssize_t(sizeof message))
            return std::nullopt;
        alignas(nlmsghdr) char reply[8192];
        ssize_t size;
        do
            size = ::recv(m_fd, reply, sizeof reply, 0);
        while (size < 0 && errno == EINTR);
        for (auto* header = reinterpret_cast<const nlmsghdr*>(reply);
             size > 0 && NLMSG_OK(header, static_cast<unsigned>(size));
             header = NLMSG_NEXT(header, size)) {
            if (header->nlmsg_type != SOCK_DIAG_BY_FAMILY)
                return std::nullopt; // NLMSG_ERROR: no such socket
            const auto* found = static_cast<const inet_diag_msg*>(NLMSG_DATA(header));
            return SocketDiag::Record{ found->idiag_uid, found->idiag_inode };
        }
        return std::nullopt;
    }

private:
    int m_fd;
};

std::optional<SocketDiag::Record> lookup(const QHostAddress& local,
                                         quint16 localPort,
                                         const QHostAddress& remote,
                                         quint16 remotePort)
{
    inet_diag_req_v2 request{};
    int family = 0;
    int remoteFamily = 0;
    if (!copyAddress(local, request.id.idiag_src, family) ||
        !copyAddress(remote, request.id.idiag_dst, remoteFamily) || family != remoteFamily)
        return std::nullopt;
    request.sdiag_family = static_cast<__u8>(family);
    request.sdiag_protocol = IPPROTO_TCP;
    request.idiag_states = ~0U;
    request.id.idiag_sport = htons(localPort);
    request.id.idiag_dport = htons(remotePort);
    request.id.idiag_cookie[0] = INET_DIAG_NOCOOKIE;
    request.id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    return NetlinkSocket().ask(request);
}

} // namespace

std::optional<SocketDiag::Record> SocketDiag::connection(const QHostAddress& local,
                                                         quint16 localPort,
                                                         const QHostAddress& remote,
                                                         quint16 remotePort)
{
    return lookup(local, localPort, remote, remotePort);
}

std::optional<SocketDiag::Record> SocketDiag::listener(const QHostAddress& address, quint16 port)
{
    // A listening socket has no remote end: the lookup falls through to the listeners.
    const bool ip4 = address.protocol() == QAbstractSocket::IPv4Protocol;
    return lookup(
        address, port, QHostAddress(ip4 ? QHostAddress::AnyIPv4 : QHostAddress::AnyIPv6), 0);
}

} // namespace pomvar::srv

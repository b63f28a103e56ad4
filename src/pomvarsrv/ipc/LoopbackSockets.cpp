#include "pomvarsrv/ipc/LoopbackSockets.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

// A listening socket on the family's loopback address; -1 with errno set on failure.
int listenOn(int family, std::uint16_t port)
{
    const int fd = ::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    const int on = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_storage address{};
    socklen_t size = 0;
    if (family == AF_INET) {
        auto* v4 = reinterpret_cast<sockaddr_in*>(&address);
        v4->sin_family = AF_INET;
        v4->sin_port = htons(port);
        v4->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        size = sizeof *v4;
    } else {
        ::setsockopt(fd, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
        auto* v6 = reinterpret_cast<sockaddr_in6*>(&address);
        v6->sin6_family = AF_INET6;
        v6->sin6_port = htons(port);
        v6->sin6_addr = in6addr_loopback;
        size = sizeof *v6;
    }
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(fd, SOMAXCONN) != 0) {
        const int error = errno;
        ::close(fd);
        errno = error;
        return -1;
    }
    return fd;
}

} // namespace

LoopbackSockets::Result LoopbackSockets::open(std::uint16_t port,
                                              std::vector<int>& descriptors,
                                              std::string& notes)
{
    for (const auto& [family, name] : { std::pair(AF_INET, "127.0.0.1"), { AF_INET6, "::1" } }) {
        const int fd = listenOn(family, port);
        if (fd >= 0) {
            descriptors.push_back(fd);
            continue;
        }
        if (errno == EADDRINUSE) {
            for (const int open : descriptors)
                ::close(open);
            descriptors.clear();
            return Result::portTaken;
        }
        notes.append("not listening on ").append(name).append(": ").append(std::strerror(errno));
        notes.append("\n");
    }
    return descriptors.empty() ? Result::failed : Result::listening;
}

} // namespace pomvar::srv

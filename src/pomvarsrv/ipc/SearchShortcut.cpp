#include "pomvarsrv/ipc/SearchShortcut.h"

#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <arpa/inet.h>
#include <cstdio>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srv {

int SearchShortcut::run(std::uint16_t port)
{
    const std::string frame = *wire::encodeRequestFrame(request::plain(request::appSearch));
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool sent = fd >= 0 &&
                      ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                      ::send(fd, frame.data(), frame.size(), MSG_NOSIGNAL) == ssize_t(frame.size());
    if (fd >= 0)
        ::close(fd);
    if (!sent) {
        std::fprintf(stderr,
                     "pomvarsrv: Pomvar is not running (nothing listens on port %u): start "
                     "pomvar first\n",
                     static_cast<unsigned>(port));
        return 1;
    }
    return 0;
}

} // namespace pomvar::srv

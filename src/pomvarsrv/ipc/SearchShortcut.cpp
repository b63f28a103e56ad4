#include "pomvarsrv/ipc/SearchShortcut.h"

#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

// How long the running server may take to answer.
constexpr int kReplyTimeoutMs = 10000;

// Whether the reply's first byte comes before the connection ends.
bool replied(int fd)
{
    pollfd watched{ fd, POLLIN, 0 };
    char byte;
    return ::poll(&watched, 1, kReplyTimeoutMs) == 1 && ::recv(fd, &byte, 1, 0) == 1;
}

} // namespace

int SearchShortcut::run(std::uint16_t port)
{
    // Started by a launcher (the desktop entry's action, a desktop's shortcut), the process holds
    // its proof of the user's action: the window the server opens takes the focus with it.
    std::string frames;
    for (const char* name : { "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID" }) {
        const char* token = std::getenv(name);
        if (token && *token && frames.empty())
            frames = wire::encodeRequestFrame(request::activationToken(token)).value_or("");
    }
    // The server serves a connection only once it has found the process holding it: the
    // connection stays open until the reply to a request sent after "app-search" tells that it
    // was read.
    frames += *wire::encodeRequestFrame(request::plain(request::appSearch)) +
              *wire::encodeRequestFrame(request::plain(request::getUserPrefs));
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool connected =
        fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    const bool sent =
        connected &&
        ::send(fd, frames.data(), frames.size(), MSG_NOSIGNAL) == ssize_t(frames.size()) &&
        replied(fd);
    if (fd >= 0)
        ::close(fd);
    if (!connected) {
        std::fprintf(stderr,
                     "pomvarsrv: Pomvar is not running (nothing listens on port %u): start "
                     "pomvar first\n",
                     static_cast<unsigned>(port));
        return 1;
    }
    if (!sent) {
        std::fprintf(stderr,
                     "pomvarsrv: the server on port %u did not take the request\n",
                     static_cast<unsigned>(port));
        return 1;
    }
    return 0;
}

} // namespace pomvar::srv

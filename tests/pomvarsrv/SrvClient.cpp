#include "SrvClient.h"

#include "wire/Frame.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srvtest {

using Clock = std::chrono::steady_clock;

SrvClient::~SrvClient()
{
    close();
}

bool SrvClient::connectTo(std::uint16_t port, const char* address)
{
    close();
    const bool ip6 = std::string_view(address).find(':') != std::string_view::npos;
    m_fd = ::socket(ip6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int result = -1;
    if (ip6) {
        sockaddr_in6 target{};
        target.sin6_family = AF_INET6;
        target.sin6_port = htons(port);
        ::inet_pton(AF_INET6, address, &target.sin6_addr);
        result = ::connect(m_fd, reinterpret_cast<sockaddr*>(&target), sizeof target);
    } else {
        sockaddr_in target{};
        target.sin_family = AF_INET;
        target.sin_port = htons(port);
        ::inet_pton(AF_INET, address, &target.sin_addr);
        result = ::connect(m_fd, reinterpret_cast<sockaddr*>(&target), sizeof target);
    }
    if (result != 0) {
        close();
        return false;
    }
    const int on = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return true;
}

void SrvClient::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

bool SrvClient::sendRaw(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t n = ::send(m_fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

bool SrvClient::send(std::string_view body)
{
    const auto frame = wire::encodeRequestFrame(body);
    return frame && sendRaw(*frame);
}

bool SrvClient::readExactly(char* into, std::size_t size, int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (size > 0) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd waiting{ m_fd, POLLIN, 0 };
        if (::poll(&waiting, 1, static_cast<int>(left)) <= 0)
            continue;
        const ssize_t n = ::recv(m_fd, into, size, 0);
        if (n <= 0)
            return false;
        into += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

std::optional<std::string> SrvClient::readReply(int timeoutMs)
{
    char prefix[wire::kReplyPrefixSize];
    if (m_fd < 0 || !readExactly(prefix, sizeof prefix, timeoutMs))
        return std::nullopt;
    std::string body(wire::decodeLength(std::string_view(prefix, sizeof prefix), sizeof prefix),
                     '\0');
    if (!readExactly(body.data(), body.size(), timeoutMs))
        return std::nullopt;
    return body;
}

std::optional<std::string> SrvClient::request(std::string_view body)
{
    if (!send(body))
        return std::nullopt;
    return readReply();
}

bool SrvClient::closedWithoutData(int timeoutMs)
{
    pollfd waiting{ m_fd, POLLIN, 0 };
    if (::poll(&waiting, 1, timeoutMs) <= 0)
        return false;
    char byte = 0;
    const ssize_t n = ::recv(m_fd, &byte, 1, 0);
    return n == 0 || (n < 0 && errno == ECONNRESET);
}

namespace {

// Appends the pieces one by one (GCC 12 at -O3 warns wrongly about chains of operator+).
std::string joined(std::initializer_list<std::string_view> pieces)
{
    std::string text;
    for (const auto piece : pieces)
        text.append(piece);
    return text;
}

} // namespace

std::string SrvClient::plain(std::string_view id)
{
    return joined({ "{\n    \"id\": \"", id, "\"\n}" });
}

std::string SrvClient::withAppkey(std::string_view id, std::string_view appkey)
{
    return joined({ "{\n    \"id\": \"", id, "\",\n    \"appkey\": \"", appkey, "\"\n}" });
}

std::string SrvClient::withAppcat(std::string_view id, std::string_view appcat)
{
    return joined({ "{\n    \"id\": \"", id, "\",\n    \"appcat\": \"", appcat, "\"\n}" });
}

std::string SrvClient::toggleSetAppcat(std::string_view appkey, std::string_view appcat)
{
    return joined({ "{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"",
                    appkey,
                    "\",\n    \"appcat\": \"",
                    appcat,
                    "\"\n }   " });
}

std::string SrvClient::organizer(int pane, std::string_view itemkey)
{
    const std::string number = std::to_string(pane);
    if (itemkey.empty())
        return joined({ "{\n    \"id\": \"organizer\",\n    \"pane\": ",
                        number,
                        ",\n    \"itemkey\": null\n}" });
    return joined({ "{\n    \"id\": \"organizer\",\n    \"pane\": ",
                    number,
                    ",\n    \"itemkey\": \"",
                    itemkey,
                    "\"\n}" });
}

} // namespace pomvar::srvtest

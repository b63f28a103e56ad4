// Prints the cost of one awaited request against the fake runtime server over loopback,
// beside a bare blocking-socket ping-pong with the same server, and the time to receive an
// 8 MiB All Apps reply and read it into menu rows.
#include "FakeRuntimeServer.h"
#include "Median.h"
#include "ipc/JsonDocument.h"
#include "ipc/RuntimeLink.h"
#include "model/MenuList.h"
#include "model/MenuPayloadReader.h"
#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <QCoreApplication>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace pomvar;
using Clock = std::chrono::steady_clock;

using pomvar::bench::median;

namespace {

double microsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

bool readExactly(int fd, char* into, std::size_t size)
{
    while (size > 0) {
        const ssize_t n = ::recv(fd, into, size, 0);
        if (n <= 0)
            return false;
        into += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

std::vector<double> bareRoundTrips(std::uint16_t port, int count)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    const int on = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const std::string frame = *wire::encodeRequestFrame(request::plain(request::getAppStatus));
    std::vector<double> times;
    std::string reply;
    for (int i = 0; i < count; ++i) {
        const auto start = Clock::now();
        ::send(fd, frame.data(), frame.size(), 0);
        char prefix[4];
        readExactly(fd, prefix, 4);
        reply.resize(wire::decodeLength(std::string_view(prefix, 4), 4));
        readExactly(fd, reply.data(), reply.size());
        times.push_back(microsSince(start));
    }
    ::close(fd);
    return times;
}

// Answers every request on one connection with the same reply, from a plain blocking socket:
// the 8 MiB figures then time the front end, not the fake server's event loop writing 8 MiB.
class BlockingReplier
{
public:
    explicit BlockingReplier(const std::string& body)
        : m_frame(*wire::encodeReplyFrame(body))
        , m_listenFd(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ::bind(m_listenFd, reinterpret_cast<sockaddr*>(&address), size);
        ::listen(m_listenFd, 1);
        ::getsockname(m_listenFd, reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
    ~BlockingReplier()
    {
        m_thread.join(); // ends when the client closes its connection
        ::close(m_listenFd);
    }

    std::uint16_t port() const { return m_port; }

private:
    void serve()
    {
        const int fd = ::accept(m_listenFd, nullptr, nullptr);
        std::string request;
        char prefix[wire::kRequestPrefixSize];
        while (readExactly(fd, prefix, sizeof prefix)) {
            request.resize(wire::decodeLength(std::string_view(prefix, sizeof prefix),
                                              wire::kRequestPrefixSize));
            if (!readExactly(fd, request.data(), request.size()))
                break;
            for (std::size_t at = 0; at < m_frame.size();) {
                const ssize_t n = ::send(fd, m_frame.data() + at, m_frame.size() - at, 0);
                if (n <= 0)
                    break;
                at += static_cast<std::size_t>(n);
            }
        }
        ::close(fd);
    }

    std::string m_frame;
    int m_listenFd;
    std::uint16_t m_port = 0;
    std::thread m_thread;
};

std::string appListOfSize(std::size_t bytes)
{
    nlohmann::json apps = nlohmann::json::array();
    std::size_t size = 2;
    for (int i = 0; size < bytes; ++i) {
        nlohmann::json app = {
            { "appkey", "org.example.Application" + std::to_string(i) + ".desktop" },
            { "name", "Example Application " + std::to_string(i) },
            { "bundleid", "org.example.Application" + std::to_string(i) },
            { "iconpath", "/home/user/.cache/pomvar/icons/24/app" + std::to_string(i) + ".png" },
            { "iconpath2x", "/home/user/.cache/pomvar/icons/48/app" + std::to_string(i) + ".png" },
            { "pinned", i % 7 == 0 }
        };
        size += app.dump().size() + 1;
        apps.push_back(std::move(app));
    }
    return apps.dump();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv); // the fake server serves from a Qt event loop
    constexpr int kRounds = 3000;
    test::FakeRuntimeServer server;
    server.listen();

    // Warm up both paths, then interleave the measurements so that both see the same machine.
    std::vector<double> linkTimes;
    std::vector<double> bareTimes;
    {
        RuntimeLink link(PomvarRT{ "localhost", server.port() });
        const std::string text = request::plain(request::getAppStatus);
        for (int i = 0; i < 200; ++i)
            link.sendMessageAndAwaitResponseData(text);
        bareRoundTrips(server.port(), 200);
        for (int batch = 0; batch < 10; ++batch) {
            for (int i = 0; i < kRounds / 10; ++i) {
                const auto start = Clock::now();
                link.sendMessageAndAwaitResponseData(text);
                linkTimes.push_back(microsSince(start));
            }
            const auto bare = bareRoundTrips(server.port(), kRounds / 10);
            bareTimes.insert(bareTimes.end(), bare.begin(), bare.end());
        }
    }
    const double link = median(linkTimes);
    const double bare = median(bareTimes);
    std::printf("awaited request round trip (median of %d): %.1f us\n", kRounds, link);
    std::printf("bare blocking-socket ping-pong (median of %d): %.1f us\n", kRounds, bare);
    std::printf("ratio: %.2fx (target: within 2x)\n", link / bare);

    const auto measureBigReply = [&](const char* shape, const std::string& body) {
        BlockingReplier replier(body);
        RuntimeLink bigLink(PomvarRT{ "localhost", replier.port() });
        const std::string allApps = request::plain(request::getAllAppsMenuData);
        std::vector<double> receiveTimes;
        std::vector<double> totalTimes;
        std::vector<double> parseTimes;
        std::vector<double> rowTimes;
        std::size_t rowCount = 0;
        for (int i = 0; i < 9; ++i) {
            auto start = Clock::now();
            const auto data = bigLink.sendMessageAndAwaitResponseData(allApps);
            receiveTimes.push_back(microsSince(start) / 1000.0);
            {
                MenuList rows;
                start = Clock::now();
                {
                    const auto document = bigLink.sendMessageAndAwaitResponse(allApps);
                    MenuPayloadReader::readAllApps(document->root(), rows);
                }
                totalTimes.push_back(microsSince(start) / 1000.0);
                rowCount = rows.size();
            }
            // The two steps apart, from the text received above.
            MenuList rows;
            start = Clock::now();
            const auto document = JsonDocument::parse(*data);
            parseTimes.push_back(microsSince(start) / 1000.0);
            start = Clock::now();
            MenuPayloadReader::readAllApps(document->root(), rows);
            rowTimes.push_back(microsSince(start) / 1000.0);
        }
        std::printf("8 MiB reply of %s (%zu bytes, %zu rows), median of 9: receive %.1f ms; "
                    "receive, parse and read into rows %.1f ms (target: under 12 ms); "
                    "parse alone %.1f ms, rows alone %.1f ms\n",
                    shape,
                    body.size(),
                    rowCount,
                    median(receiveTimes),
                    median(totalTimes),
                    median(parseTimes),
                    median(rowTimes));
    };
    measureBigReply("32,000 app objects", appListOfSize(8 * 1024 * 1024));
    measureBigReply("one long string", "[\"" + std::string(8 * 1024 * 1024 - 4, 'z') + "\"]");
    return 0;
}

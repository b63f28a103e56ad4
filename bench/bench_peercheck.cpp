// Prints the cost of the peer check (PeerCheck) per connection, with the connection's own
// sockets alone in the table and with 20,000 more: for the front end, decided on the GUI thread
// (target: 1 ms), and for another process of the user, whose holder is searched for on a thread
// of its own (the GUI thread's share, and the time until the verdict). As root it runs in a
// network namespace of its own, so that the table holds nothing else; otherwise the machine's
// sockets count too. The 20,000 are connected loopback pairs held by two child processes.
#include "Median.h"
#include "pomvarsrv/ipc/PeerCheck.h"

#include <QCoreApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

using Clock = std::chrono::steady_clock;
using pomvar::bench::median;
using pomvar::srv::PeerCheck;

namespace {

constexpr int kConnections = 200;
constexpr int kPairsPerChild = 5000;

double microsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// A network namespace of our own with its loopback up; false when not allowed.
bool ownNetwork()
{
    if (::unshare(CLONE_NEWNET) != 0)
        return false;
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    const bool up = ::ioctl(fd, SIOCGIFFLAGS, &request) == 0 &&
                    (request.ifr_flags |= IFF_UP, ::ioctl(fd, SIOCSIFFLAGS, &request) == 0);
    ::close(fd);
    return up;
}

int tableSize()
{
    int lines = 0;
    for (const char* table : { "/proc/net/tcp", "/proc/net/tcp6" }) {
        QFile file(QString::fromLatin1(table));
        if (file.open(QIODevice::ReadOnly))
            lines += int(file.readAll().count('\n')) - 1; // less the heading
    }
    return lines;
}

bool raiseDescriptors(rlim_t count)
{
    rlimit limit;
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = count;
    limit.rlim_max = std::max(limit.rlim_max, count); // root may raise it
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

// A child that, once told, holds kPairsPerChild connected pairs until its pipe closes.
struct Holder
{
    int go = -1;    // written to: make the sockets; closed: leave
    int ready = -1; // a byte once they are made

    static Holder fork()
    {
        int go[2], ready[2];
        if (::pipe(go) != 0 || ::pipe(ready) != 0)
            return {};
        if (::fork() != 0) {
            ::close(go[0]);
            ::close(ready[1]);
            return { go[1], ready[0] };
        }
        ::close(go[1]);
        ::close(ready[0]);
        char byte;
        if (::read(go[0], &byte, 1) == 1 && raiseDescriptors(2 * kPairsPerChild + 64)) {
            const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            socklen_t size = sizeof address;
            ::bind(listener, reinterpret_cast<sockaddr*>(&address), size);
            ::listen(listener, 4096);
            ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
            for (int i = 0; i < kPairsPerChild; ++i) {
                const int client = ::socket(AF_INET, SOCK_STREAM, 0);
                if (::connect(client, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
                    ::accept(listener, nullptr, nullptr) < 0)
                    break;
            }
            [[maybe_unused]] const auto told = ::write(ready[1], "r", 1);
            while (::read(go[0], &byte, 1) > 0) {
            }
        }
        ::_exit(0);
    }
};

struct Figures
{
    std::vector<double> onGuiThread;
    std::vector<double> untilVerdict;
};

// Connects kConnections times to `server` and checks each connection.
Figures measure(QTcpServer& server, PeerCheck& check)
{
    Figures figures;
    for (int i = 0; i < kConnections; ++i) {
        QTcpSocket client;
        client.connectToHost(server.serverAddress(), server.serverPort());
        if (!client.waitForConnected(5000) || !server.waitForNewConnection(5000))
            break;
        QTcpSocket* accepted = server.nextPendingConnection();
        bool decided = false;
        QString refusal;
        const auto start = Clock::now();
        check.check(*accepted, accepted, [&](const QString& why) {
            figures.untilVerdict.push_back(microsSince(start));
            refusal = why;
            decided = true;
        });
        figures.onGuiThread.push_back(microsSince(start));
        while (!decided)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!refusal.isEmpty())
            std::printf("  refused: %s\n", qPrintable(refusal));
        delete accepted;
    }
    return figures;
}

void print(const char* who, const Figures& figures)
{
    std::vector<double> guiThread = figures.onGuiThread;
    std::sort(guiThread.begin(), guiThread.end());
    const auto at = [&](std::size_t percent) {
        return guiThread.empty() ? -1.0 : guiThread[(guiThread.size() - 1) * percent / 100];
    };
    std::printf("  %-30s GUI thread: median %6.1f us, 95%% %7.1f us, max %8.1f us; verdict after "
                "median %9.1f us\n",
                who,
                at(50),
                at(95),
                at(100),
                median(figures.untilVerdict));
}

} // namespace

int main(int argc, char* argv[])
{
    const bool alone = ownNetwork();
    // Forked before Qt starts any thread.
    Holder holders[] = { Holder::fork(), Holder::fork() };
    QCoreApplication app(argc, argv);
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost)) {
        std::fprintf(stderr, "cannot listen on loopback\n");
        return 1;
    }
    PeerCheck frontEnd(::getpid()); // this process stands for the front end
    PeerCheck other(0);             // no front end: every holder is searched for
    std::printf("%d connections each; %s\n",
                kConnections,
                alone ? "a network namespace of its own" : "the machine's network namespace");
    for (const bool big : { false, true }) {
        if (big) {
            for (Holder& holder : holders) {
                char byte;
                if (::write(holder.go, "g", 1) != 1 || ::read(holder.ready, &byte, 1) != 1) {
                    std::fprintf(stderr, "the socket holders failed\n");
                    return 1;
                }
            }
        }
        // The connection's two ends besides the table.
        std::printf("%d sockets in the table, and the connection's two:\n", tableSize());
        print("the front end's connection", measure(server, frontEnd));
        print("another process's (a search)", measure(server, other));
    }
    for (Holder& holder : holders)
        ::close(holder.go);
    std::printf("target: 1 ms per connection for the check on the GUI thread\n");
    return 0;
}

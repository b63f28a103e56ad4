// Prints the runtime server's start-up and menu-data figures against a generated desktop:
// start to listening and to the first answered request with 1,000 installed apps, with a cold
// icon cache (every icon to render) and a warm one; the time until the background renders are
// in; the "get-allapps-menu-data" reply time and size for 1,000 and 5,000 apps.
#include "GeneratedApps.h"
#include "Median.h"
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace pomvar::test;
using pomvar::bench::benchEnvironment;
using pomvar::bench::populate;

using pomvar::bench::median;

namespace {

// A request without fields, as plain JSON: the server reads it as it reads the front end's text.
std::string plain(const char* id)
{
    return nlohmann::json{ { "id", id } }.dump();
}

struct StartFigures
{
    double listeningMs = 0;
    double readyMs = 0;
    double iconsMs = 0;
};

bool waitForIcons(std::uint16_t port)
{
    SrvClient client;
    if (!client.connectTo(port))
        return false;
    for (int attempt = 0; attempt < 60000; ++attempt) {
        const auto reply = client.request(plain("get-menu-data-modified-status"));
        if (!reply)
            return false;
        if (nlohmann::json::parse(*reply).value("appFolderModified", false))
            return true;
        QThread::msleep(1);
    }
    return false;
}

StartFigures startOnce(const TestDesktop& desktop, bool cold, QProcess& server, std::uint16_t port)
{
    StartFigures figures;
    server.setProcessEnvironment(benchEnvironment(desktop, port));
    server.setStandardErrorFile(desktop.root() + QStringLiteral("/bench-server.log"),
                                QIODevice::Append);
    QElapsedTimer clock;
    clock.start();
    server.start(QStringLiteral(POMVARSRV_PATH), {});
    SrvClient client;
    while (!client.connectTo(port))
        QThread::usleep(200);
    figures.listeningMs = clock.nsecsElapsed() / 1e6;
    client.request(plain("get-app-status"));
    figures.readyMs = clock.nsecsElapsed() / 1e6;
    if (cold && waitForIcons(port))
        figures.iconsMs = clock.nsecsElapsed() / 1e6;
    return figures;
}

void stop(QProcess& server, std::uint16_t port)
{
    SrvClient client;
    if (client.connectTo(port))
        client.send(plain("quit"));
    server.waitForFinished(30000);
}

void allAppsFigures(const TestDesktop& desktop, int count)
{
    const std::uint16_t port = ServerProcess::freePort();
    QProcess server;
    startOnce(desktop, true, server, port);
    SrvClient client;
    client.connectTo(port);
    std::vector<double> times;
    std::size_t size = 0;
    std::size_t apps = 0;
    for (int i = 0; i < 30; ++i) {
        QElapsedTimer clock;
        clock.start();
        const auto reply = client.request(plain("get-allapps-menu-data"));
        times.push_back(clock.nsecsElapsed() / 1e6);
        size = reply ? reply->size() : 0;
        apps = reply ? nlohmann::json::parse(*reply).size() : 0;
    }
    // The first request builds the payload; later ones reuse it until apps, icons or pins change.
    std::printf("get-allapps-menu-data, %5d apps: first %6.2f ms, then median %6.2f ms, "
                "min %6.2f ms, %zu bytes (%zu apps in the reply)\n",
                count,
                times.front(),
                median(times),
                *std::min_element(times.begin(), times.end()),
                size,
                apps);
    client.close();
    stop(server, port);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    std::printf("pomvarsrv start-up (%s)\n", POMVARSRV_PATH);
    {
        TestDesktop desktop;
        populate(desktop, 1000, 400);
        std::vector<double> coldListening, coldReady, coldIcons, warmListening, warmReady;
        for (int run = 0; run < 3; ++run) {
            QDir(desktop.iconCache()).removeRecursively();
            const std::uint16_t port = ServerProcess::freePort();
            QProcess server;
            const StartFigures cold = startOnce(desktop, true, server, port);
            stop(server, port);
            coldListening.push_back(cold.listeningMs);
            coldReady.push_back(cold.readyMs);
            coldIcons.push_back(cold.iconsMs);
            for (int warm = 0; warm < 3; ++warm) {
                QProcess again;
                const StartFigures figures = startOnce(desktop, false, again, port);
                stop(again, port);
                warmListening.push_back(figures.listeningMs);
                warmReady.push_back(figures.readyMs);
            }
        }
        std::printf("1000 apps, cold icon cache (400 icons to render): listening %6.1f ms, "
                    "first reply %6.1f ms, icons rendered %7.1f ms (medians of %zu)\n",
                    median(coldListening),
                    median(coldReady),
                    median(coldIcons),
                    coldListening.size());
        std::printf("1000 apps, warm icon cache:                         listening %6.1f ms, "
                    "first reply %6.1f ms (medians of %zu)\n",
                    median(warmListening),
                    median(warmReady),
                    warmListening.size());
        allAppsFigures(desktop, 1000);
    }
    {
        TestDesktop desktop;
        populate(desktop, 5000, 400);
        allAppsFigures(desktop, 5000);
    }
    return 0;
}

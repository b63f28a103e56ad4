// Prints how long the server's small windows take to open, with a runtime server run in-process
// over 5,000 desktop entries: from the request to the window shown and focused ("Get Info" on an
// app, the first time and later; on a category of 5,000 apps; About; the updates window), and
// the welcome's "Start with categories" over all the apps; and how long noticing an update takes.
// Run it under Xvfb (QT_QPA_PLATFORM=xcb) for real windows.
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "Median.h"
#include "TestDesktop.h"
#include "WindowTiming.h"
#include "pomvarsrv/app/Updates.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace pomvar;
using test::InProcessServer;

using bench::median;

namespace {

// From sending the request to the window of that object name shown and active, in ms; -1 when
// it did not show. The window is closed afterwards.
double opening(const InProcessServer& server, const std::string& request, const char* window)
{
    const double ms = bench::WindowTiming::openingMs(server.port(), request, window);
    if (QWidget* shown = bench::WindowTiming::activeWindow(window, 0))
        shown->close();
    QTest::qWait(20);
    return ms;
}

} // namespace

int main(int argc, char* argv[])
{
    constexpr int kApps = 5000;
    test::TestDesktop desktop;
    bench::populate(desktop, kApps, 400);
    bench::useInThisProcess(desktop);
    QTemporaryDir install;
    test::TestDesktop::write(install.filePath(paths::versionFile), "99.0.0\n");
    QApplication app(argc, argv);
    InProcessServer server;
    srv::ServerOptions options;
    options.installDir = install.path();
    if (!server.start(options))
        return 1;

    // The welcome shows at the first start: its offer files every app.
    QWidget* welcome = InProcessServer::waitForWindow("welcomeWindow");
    if (!welcome)
        return 1;
    QElapsedTimer clock;
    clock.start();
    welcome->findChild<QPushButton*>("startWithCategories")->click();
    std::printf("welcome over %zu apps: \"Start with categories\" made and stored in %.1f ms\n",
                server.app().model().apps().size(),
                clock.nsecsElapsed() / 1e6);

    std::vector<double> appInfo;
    for (int i = 0; i < 9; ++i)
        appInfo.push_back(
            opening(server,
                    request::getInfoApp("org.example.Bench" + std::to_string(i * 7) + ".desktop"),
                    "appInfoWindow"));
    const double first = appInfo.front();
    appInfo.erase(appInfo.begin());
    std::printf("app info: request to shown and focused %.1f ms the first time, then median "
                "%.1f ms\n",
                first,
                median(appInfo));
    std::printf("category info of %d apps: %.1f ms; about: %.1f ms; updates: %.1f ms\n",
                kApps,
                opening(server, request::getInfoAppcat("Accessories"), "categoryInfoWindow"),
                opening(server, request::plain(request::about), "aboutWindow"),
                opening(server, request::plain(request::checkUpdates), "updatesWindow"));

    // What check-update-available and get-app-update-status do per request.
    const srv::Updates updates(install.path(), QStringLiteral("1.0.0"));
    std::vector<double> checks;
    bool newer = false;
    for (int i = 0; i < 200; ++i) {
        clock.restart();
        newer = updates.isNewerInstalled();
        checks.push_back(clock.nsecsElapsed() / 1e3);
    }
    std::printf("noticing a newer install (reading the version file): median %.1f us (%s)\n",
                median(checks),
                newer ? "newer" : "not newer");
    return 0;
}

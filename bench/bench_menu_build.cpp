// Prints how long the view model takes to build its menus from the fake runtime server:
// the first build with 1,000 and 5,000 apps in All Apps (reply parse included), a full
// rebuild after the apps changed, and an opening with nothing changed (four exchanges).
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "Median.h"
#include "model/PomvarViewModel.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace pomvar;
using Clock = std::chrono::steady_clock;
using test::FakeRuntimeServer;

using pomvar::bench::median;

namespace {

double millisSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    for (const int count : { 1000, 5000 }) {
        FakeRuntimeServer server;
        server.listen();
        test::FakeMenus menus;
        const auto key = [](int i) { return "app" + std::to_string(i) + ".desktop"; };
        for (int i = 0; i < count; ++i)
            menus.addApp(
                { key(i), "App " + std::to_string(i), "/icons/24/app.png", "/icons/48/app.png" });
        for (const int i : { 1, 2, 3 })
            menus.addRecent(key(i));
        menus.pin(key(0));
        menus.pin(key(5));
        menus.addCategory("Work", { key(7), key(8) });
        menus.addCategory("Games", { key(9) });
        menus.install(server);
        const std::size_t payloadBytes = menus.allApps().dump().size();

        std::vector<double> firstBuilds;
        std::vector<double> rebuilds;
        std::vector<double> unchanged;
        for (int round = 0; round < 7; ++round) {
            const auto start = Clock::now();
            PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
            firstBuilds.push_back(millisSince(start));

            server.queueReply(
                "get-menu-data-modified-status",
                FakeRuntimeServer::Reply::json(test::FakeMenus::modified("appFolderModified")));
            const auto rebuildStart = Clock::now();
            vm.updateMenu();
            rebuilds.push_back(millisSince(rebuildStart));

            for (int i = 0; i < 50; ++i) {
                const auto openStart = Clock::now();
                vm.updateMenu();
                unchanged.push_back(millisSince(openStart));
            }
        }
        std::printf("%d apps (All Apps reply %zu bytes), median of 7:\n", count, payloadBytes);
        std::printf("  first build (constructor): %.1f ms (target for 5,000: under 60 ms)\n",
                    median(firstBuilds));
        std::printf("  full rebuild after the apps changed (updateMenu): %.1f ms\n",
                    median(rebuilds));
        std::printf("  updateMenu with no flags set (four exchanges), median of %zu: %.3f ms "
                    "(target: under 1 ms)\n",
                    unchanged.size(),
                    median(unchanged));
    }
    return 0;
}

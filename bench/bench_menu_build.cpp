// Prints how long the view model takes to build its menus from the fake runtime server:
// the first build with 1,000 and 5,000 apps in All Apps (reply parse included), a full
// rebuild after the apps changed, and an opening with nothing changed (four exchanges).
#include "FakeRuntimeServer.h"
#include "MenuPayloads.h"
#include "model/PomvarViewModel.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace pomvar;
using Clock = std::chrono::steady_clock;
using test::FakeRuntimeServer;

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

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
        const auto apps = test::allAppsJson(count);
        server.setDefaultReply("get-allapps-menu-data", FakeRuntimeServer::Reply::json(apps));
        server.setDefaultReply("get-recentapps-menu-data",
                               FakeRuntimeServer::Reply::json({ apps[1], apps[2], apps[3] }));
        server.setDefaultReply(
            "get-myapps-menu-data",
            FakeRuntimeServer::Reply::json(
                test::myAppsJson({ apps[0], apps[5] },
                                 { { "Work", { apps[7], apps[8] } }, { "Games", { apps[9] } } })));
        const std::size_t payloadBytes = apps.dump().size();

        std::vector<double> firstBuilds;
        std::vector<double> rebuilds;
        std::vector<double> unchanged;
        for (int round = 0; round < 7; ++round) {
            const auto start = Clock::now();
            PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
            firstBuilds.push_back(millisSince(start));

            server.queueReply(
                "get-menu-data-modified-status",
                FakeRuntimeServer::Reply::json(test::modifiedFlags(true, false, false, false)));
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

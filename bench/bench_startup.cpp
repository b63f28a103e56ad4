// Prints how long the front end takes from exec until its readiness probe sees the runtime
// server's port, with a fake server that listens at once (median of several runs), and the
// share of that time spent in the lsof probes. Uses port 50818: run it alone.
//
// The layout is a copy of the install tree in a temporary folder: bin/pomvar and the fake
// server as libexec/pomvar/pomvarsrv. A timing stand-in for lsof goes first on the PATH.
#include "Median.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace fs = std::filesystem;

using pomvar::bench::median;

namespace {

struct Probe
{
    long long startNs;
    long long endNs;
    int status;
};

long long nowNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

std::vector<Probe> readProbes(const fs::path& log)
{
    std::vector<Probe> probes;
    std::ifstream in(log);
    Probe probe{};
    while (in >> probe.startNs >> probe.endNs >> probe.status)
        probes.push_back(probe);
    return probes;
}

// The fakes are not our children: find them by the program they run.
std::vector<pid_t> fakeServers(const fs::path& fake)
{
    std::vector<pid_t> pids;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        std::error_code error;
        if (fs::read_symlink(entry.path() / "exe", error) == fake)
            pids.push_back(static_cast<pid_t>(std::stoi(name)));
    }
    return pids;
}

void stopFakeServers(const fs::path& fake)
{
    for (;;) {
        const auto pids = fakeServers(fake);
        if (pids.empty())
            return;
        for (const pid_t pid : pids)
            ::kill(pid, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace

int main(int argc, char** argv)
{
    const int runs = argc > 1 ? std::atoi(argv[1]) : 11;
    const fs::path root =
        fs::temp_directory_path() / ("pomvar-bench-startup-" + std::to_string(::getpid()));
    fs::create_directories(root / "bin");
    fs::create_directories(root / "libexec/pomvar");
    fs::create_directories(root / "probe");
    fs::create_directories(root / "fake");
    fs::create_directories(root / "home/.cache");
    fs::create_directories(root / "home/runtime");
    fs::permissions(root / "home/runtime", fs::perms::owner_all);
    fs::copy_file(POMVAR_BENCH_FRONT_END, root / "bin/pomvar");
    fs::copy_file(POMVAR_BENCH_FAKE_SERVER, root / "libexec/pomvar/pomvarsrv");
    fs::copy_file(POMVAR_BENCH_LSOF_TIMER, root / "probe/lsof");
    const fs::path fake = root / "libexec/pomvar/pomvarsrv";
    const fs::path probeLog = root / "probes.log";

    std::vector<std::string> envText;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        if (!text.starts_with("PATH=") && !text.starts_with("HOME=") &&
            !text.starts_with("XDG_CACHE_HOME=") && !text.starts_with("XDG_RUNTIME_DIR="))
            envText.push_back(text);
    }
    const char* path = std::getenv("PATH");
    envText.push_back("PATH=" + (root / "probe").string() + ":" + (path ? path : "/usr/bin:/bin"));
    envText.push_back("HOME=" + (root / "home").string());
    envText.push_back("XDG_CACHE_HOME=" + (root / "home/.cache").string());
    envText.push_back("XDG_RUNTIME_DIR=" + (root / "home/runtime").string());
    envText.push_back("QT_QPA_PLATFORM=offscreen");
    envText.push_back("POMVAR_FAKE_DIR=" + (root / "fake").string());
    envText.push_back("POMVAR_BENCH_PROBE_LOG=" + probeLog.string());
    std::vector<char*> env;
    for (auto& text : envText)
        env.push_back(text.data());
    env.push_back(nullptr);

    std::vector<double> totalMs;
    std::vector<double> probeMs;
    std::vector<double> probeCounts;
    for (int run = 0; run < runs; ++run) {
        fs::remove(probeLog);
        std::string program = (root / "bin/pomvar").string();
        char* frontEndArgv[] = { program.data(), nullptr };
        pid_t frontEnd = 0;
        const long long start = nowNs();
        if (posix_spawn(&frontEnd, program.c_str(), nullptr, nullptr, frontEndArgv, env.data()) !=
            0) {
            std::perror("posix_spawn");
            return 1;
        }
        // Wait until a probe has seen the port.
        std::vector<Probe> probes;
        for (;;) {
            probes = readProbes(probeLog);
            if (!probes.empty() && probes.back().status == 0)
                break;
            if (::waitpid(frontEnd, nullptr, WNOHANG) == frontEnd) {
                std::fprintf(stderr, "bench_startup: the front end ended early\n");
                return 1;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        ::kill(frontEnd, SIGTERM);
        ::waitpid(frontEnd, nullptr, 0);
        stopFakeServers(fake);

        double inProbes = 0;
        for (const Probe& probe : probes)
            inProbes += static_cast<double>(probe.endNs - probe.startNs) / 1e6;
        totalMs.push_back(static_cast<double>(probes.back().endNs - start) / 1e6);
        probeMs.push_back(inProbes);
        probeCounts.push_back(static_cast<double>(probes.size()));
    }
    fs::remove_all(root);

    const double total = median(totalMs);
    const double inProbes = median(probeMs);
    std::printf("start-up, exec until the probe sees the port (median of %d runs)\n", runs);
    std::printf("  total:           %8.1f ms (min %.1f, max %.1f)\n",
                total,
                *std::min_element(totalMs.begin(), totalMs.end()),
                *std::max_element(totalMs.begin(), totalMs.end()));
    std::printf("  in lsof probes:  %8.1f ms (%.0f%%), %.0f probes per start\n",
                inProbes,
                100.0 * inProbes / total,
                median(probeCounts));
    std::printf("  one probe:       %8.1f ms\n", inProbes / median(probeCounts));
    return 0;
}

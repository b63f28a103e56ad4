// Stands in for lsof on the PATH of bench_startup: runs the real lsof with the same
// arguments and streams, then appends "<start ns> <end ns> <exit status>" (steady clock) to
// $POMVAR_BENCH_PROBE_LOG.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace {

long long nowNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

} // namespace

int main(int, char** argv)
{
    const long long start = nowNs();
    char lsof[] = "/usr/bin/lsof";
    argv[0] = lsof;
    pid_t pid = 0;
    int status = 0;
    if (posix_spawn(&pid, lsof, nullptr, nullptr, argv, environ) != 0 ||
        waitpid(pid, &status, 0) != pid)
        return 126;
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    if (const char* log = std::getenv("POMVAR_BENCH_PROBE_LOG")) {
        if (FILE* file = std::fopen(log, "a")) {
            std::fprintf(file, "%lld %lld %d\n", start, nowNs(), code);
            std::fclose(file);
        }
    }
    return code;
}

#include "log/ProcessEnd.h"

#include <atomic>
#include <cstdlib>

namespace pomvar {

namespace {

std::atomic<ProcessEnd::Cleanup> g_cleanup = nullptr;

void cleanUpAtExit()
{
    ProcessEnd::cleanUp();
}

} // namespace

void ProcessEnd::setCleanup(Cleanup cleanup) noexcept
{
    if (!g_cleanup.exchange(cleanup))
        std::atexit(cleanUpAtExit);
}

void ProcessEnd::cleanUp() noexcept
{
    if (const Cleanup cleanup = g_cleanup.exchange(nullptr))
        cleanup();
}

} // namespace pomvar

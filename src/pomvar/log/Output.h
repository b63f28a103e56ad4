#pragma once

#include <sstream>
#include <string>
#include <string_view>

namespace pomvar {

#ifdef POMVAR_DIAGNOSTIC
inline constexpr bool kTracing = true;
#else
inline constexpr bool kTracing = false;
#endif

// Writes one whole line to standard output in a single write, so lines from the IPC thread
// and the main thread never interleave.
void printLine(std::string_view line);

// Stops the process on a broken contract: the message goes to standard error, then abort().
[[noreturn]] void fatalStop(std::string_view message);

template <typename... Parts>
std::string concat(const Parts&... parts)
{
    std::ostringstream out;
    (out << ... << parts);
    return out.str();
}

// A trace line: written in a diagnostic build only. The parts are not even formatted otherwise.
template <typename... Parts>
void trace(const Parts&... parts)
{
    if constexpr (kTracing)
        printLine(concat(parts...));
}

} // namespace pomvar

#pragma once

#include <string>
#include <vector>

namespace pomvar {

// What the command line asks for.
struct CmdLine
{
    enum class Action
    {
        run,
        help,
        version,
    };
    Action action = Action::run;
    std::string text;                // what to print for help and version, lines ending in '\n'
    std::vector<std::string> rtArgs; // arguments for the runtime server, for a run
};

// Reads the command line (the whole argument vector). Unknown flags end the reading silently;
// what was recognised before them stays in effect.
CmdLine readCmdLine(const std::vector<std::string>& arguments, bool bold);

// True when standard output is a terminal and NO_COLOR is not set.
bool stdoutWantsBold();

// Prints help or version and exits with status 0, or returns the runtime server's arguments.
std::vector<std::string> processCmdLineArgs(const std::vector<std::string>& arguments);

} // namespace pomvar

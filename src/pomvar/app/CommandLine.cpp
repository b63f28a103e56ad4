#include "app/CommandLine.h"

#include "app/AppLog.h"
#include "app/FlagParser.h"
#include "wire/Version.h"

#include <cstdlib>
#include <unistd.h>

namespace pomvar {

CmdLine readCmdLine(const std::vector<std::string>& arguments, bool bold)
{
    FlagParser flags(arguments);
    const auto& clearRecent =
        flags.define(std::nullopt, "clear-recent", "clear the recent apps menu");
    const auto& refresh = flags.define(std::nullopt, "refresh", "refresh the pomvar");
    const auto& welcome = flags.define(std::nullopt, "welcome", "show welcome dialog at startup");
    const auto& help = flags.define('h', "help", "show this help message and exit");
    const auto& version =
        flags.define(std::nullopt, "version", "show version information and exit");

    flags.parse();

    CmdLine cmdLine;
    if (help.wasSet) {
        cmdLine.action = CmdLine::Action::help;
        cmdLine.text = "Pomvar for Linux: the customizable app launcher for Linux\n\n" +
                       flags.usage(bold) + "\n";
    } else if (version.wasSet) {
        cmdLine.action = CmdLine::Action::version;
        cmdLine.text = concat("Pomvar for Linux version ", pomvar::version(), "\n");
    } else {
        if (clearRecent.wasSet)
            cmdLine.rtArgs.emplace_back("--clear-recent");
        if (refresh.wasSet)
            cmdLine.rtArgs.emplace_back("--refresh");
        if (welcome.wasSet)
            cmdLine.rtArgs.emplace_back("--welcome");
    }
    return cmdLine;
}

bool stdoutWantsBold()
{
    return ::isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
}

std::vector<std::string> processCmdLineArgs(const std::vector<std::string>& arguments)
{
    CmdLine cmdLine = readCmdLine(arguments, stdoutWantsBold());
    if (cmdLine.action == CmdLine::Action::run)
        return std::move(cmdLine.rtArgs);
    // printLine adds the final line break itself.
    cmdLine.text.pop_back();
    printLine(lcApp(), cmdLine.text);
    std::exit(0);
}

} // namespace pomvar

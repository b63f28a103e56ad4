#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace pomvar {

// Reads on/off flags from the command line, left to right. "--name" sets a flag by its long
// name; any other argument starting with "-" holds one or more short names ("-h"); other
// arguments are skipped, and "---" ends the flags. Reading stops silently at the first argument
// that names no flag or gives a flag a value: what came before it counts.
//
// Not QCommandLineParser: it reads on past an unknown option ("--bogus --refresh" sets
// refresh) and ends the options at "--", not "---", so it cannot give these rules.
class FlagParser
{
public:
    struct Flag
    {
        std::optional<char> shortName;
        std::string longName;
        std::string description;
        bool wasSet = false;
    };

    // `arguments` is the whole argument vector, the program's own path first.
    explicit FlagParser(std::vector<std::string> arguments);

    // The returned flag stays valid as long as the parser.
    const Flag& define(std::optional<char> shortName,
                       std::string longName,
                       std::string description);
    void parse();
    // "usage: <tool> [options]", "options:", then each flag's names and description, the two
    // headings in bold when asked; every line ends in '\n'.
    std::string usage(bool bold) const;

private:
    bool set(std::string_view argument);

    std::string m_toolName;
    std::vector<std::string> m_arguments;
    std::deque<Flag> m_flags;
};

} // namespace pomvar

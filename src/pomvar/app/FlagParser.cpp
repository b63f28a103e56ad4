#include "app/FlagParser.h"

#include "log/Output.h"

namespace pomvar {

FlagParser::FlagParser(std::vector<std::string> arguments)
{
    if (arguments.empty())
        return;
    const std::string& path = arguments.front();
    m_toolName = path.substr(path.find_last_of('/') + 1);
    m_arguments.assign(arguments.begin() + 1, arguments.end());
}

const FlagParser::Flag& FlagParser::define(std::optional<char> shortName,
                                           std::string longName,
                                           std::string description)
{
    return m_flags.emplace_back(Flag{ shortName, std::move(longName), std::move(description) });
}

void FlagParser::parse()
{
    for (const std::string& argument : m_arguments) {
        if (argument == "---" ||
            (argument.starts_with('-') && argument.size() > 1 && !set(argument)))
            return;
    }
}

bool FlagParser::set(std::string_view argument)
{
    if (argument.starts_with("--")) {
        for (Flag& flag : m_flags) {
            if (argument.substr(2) == flag.longName) {
                flag.wasSet = true;
                return true;
            }
        }
        return false;
    }
    // A group of short names is read up to its first unknown one.
    for (const char name : argument.substr(1)) {
        Flag* found = nullptr;
        for (Flag& flag : m_flags) {
            if (flag.shortName == name)
                found = &flag;
        }
        if (!found)
            return false;
        found->wasSet = true;
    }
    return true;
}

std::string FlagParser::usage(bool bold) const
{
    const auto heading = [bold](std::string_view word) {
        return bold ? concat("\x1b[1m", word, "\x1b[0m") : std::string(word);
    };
    std::string text =
        concat(heading("usage:"), " ", m_toolName, " [options]\n", heading("options:"), "\n");
    for (const Flag& flag : m_flags) {
        const std::string shortName = flag.shortName ? concat("-", *flag.shortName, ", ") : "";
        text += concat("  ", shortName, "--", flag.longName, "\n      ", flag.description, "\n");
    }
    return text;
}

} // namespace pomvar

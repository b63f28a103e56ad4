#include "app/FlagParser.h"

#include "ipc/Output.h"

namespace pomvar {

FlagParser::FlagParser(std::vector<std::string> arguments)
{
    if (arguments.empty()) {
        m_toolName = "<unknown>";
        return;
    }
    const std::string& path = arguments.front();
    const auto slash = path.find_last_of('/');
    m_toolName = slash == std::string::npos ? path : path.substr(slash + 1);
    m_arguments.assign(arguments.begin() + 1, arguments.end());
}

FlagParser::Flag& FlagParser::define(std::optional<char> shortName,
                                     std::string longName,
                                     std::string description)
{
    Flag flag;
    flag.shortName = shortName;
    flag.longName = std::move(longName);
    flag.description = std::move(description);
    return add(std::move(flag));
}

FlagParser::Flag& FlagParser::defineWithValue(std::optional<char> shortName,
                                              std::string longName,
                                              std::string description)
{
    Flag& flag = define(shortName, std::move(longName), std::move(description));
    flag.takesValue = true;
    return flag;
}

FlagParser::Flag& FlagParser::add(Flag flag)
{
    if (m_byLongName.contains(flag.longName) ||
        (flag.shortName && m_byShortName.contains(*flag.shortName)))
        fatalStop(concat("FlagParser: flag `", flag.longName, "` is defined twice"));
    Flag& added = m_flags.emplace_back(std::move(flag));
    m_byLongName.emplace(added.longName, &added);
    if (added.shortName)
        m_byShortName.emplace(*added.shortName, &added);
    return added;
}

std::string FlagParser::faultText(Fault fault, std::string_view name)
{
    switch (fault) {
        case Fault::unknownFlag:
            return concat("error parsing flag `", name, "`");
        case Fault::malformedValue:
            return concat("malformed value `", name, "`");
        case Fault::illegalCombination:
            return concat("illegal flag combination with `", name, "`");
        case Fault::tooManyValues:
            return concat("too many values from `", name, "`");
    }
    return "unknown error while parsing flags";
}

std::optional<std::string> FlagParser::parsingFailure()
{
    std::size_t next = 0;
    while (next < m_arguments.size()) {
        const std::string_view argument = m_arguments[next++];
        if (argument == "---") {
            m_parameters.insert(m_parameters.end(), m_arguments.begin() + next, m_arguments.end());
            return std::nullopt;
        }
        std::optional<std::string> failure;
        if (argument.starts_with("--"))
            failure = parseLong(argument.substr(2), next);
        else if (argument.starts_with("-") && argument.size() > 1)
            failure = parseShorts(argument.substr(1), next);
        else
            m_parameters.emplace_back(argument);
        if (failure)
            return failure;
    }
    return std::nullopt;
}

std::optional<std::string> FlagParser::parseLong(std::string_view argument, std::size_t& next)
{
    const auto equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const auto found = m_byLongName.find(name);
    if (name.empty() || found == m_byLongName.end())
        return faultText(Fault::unknownFlag, name);
    Flag& flag = *found->second;
    if (!flag.takesValue) {
        if (equals != std::string_view::npos)
            return faultText(Fault::malformedValue, name);
        flag.wasSet = true;
        return std::nullopt;
    }
    if (equals != std::string_view::npos)
        return setValue(flag, name, std::string(argument.substr(equals + 1)));
    if (next >= m_arguments.size())
        return faultText(Fault::malformedValue, name);
    return setValue(flag, name, m_arguments[next++]);
}

std::optional<std::string> FlagParser::parseShorts(std::string_view argument, std::size_t& next)
{
    for (std::size_t i = 0; i < argument.size(); ++i) {
        const std::string_view name = argument.substr(i, 1);
        const auto found = m_byShortName.find(argument[i]);
        if (found == m_byShortName.end())
            return faultText(Fault::unknownFlag, name);
        Flag& flag = *found->second;
        if (!flag.takesValue) {
            flag.wasSet = true;
            continue;
        }
        if (i + 1 != argument.size())
            return faultText(Fault::illegalCombination, name);
        if (next >= m_arguments.size())
            return faultText(Fault::malformedValue, name);
        return setValue(flag, name, m_arguments[next++]);
    }
    return std::nullopt;
}

std::optional<std::string> FlagParser::setValue(Flag& flag,
                                                std::string_view name,
                                                std::string value)
{
    if (flag.value)
        return faultText(Fault::tooManyValues, name);
    flag.wasSet = true;
    flag.value = std::move(value);
    return std::nullopt;
}

std::string FlagParser::usageDescription(std::string_view usageName,
                                         std::string_view synopsis,
                                         const Style& usageStyle,
                                         std::string_view optionsName,
                                         const Style& flagStyle,
                                         std::string_view indent) const
{
    std::string text = concat(usageStyle(usageName), " ", m_toolName, " ", synopsis, "\n");
    text += concat(usageStyle(optionsName), "\n");
    for (const Flag& flag : m_flags) {
        std::string names;
        if (flag.shortName)
            names = concat("-", *flag.shortName, ", ");
        names += concat("--", flag.longName);
        text += concat(indent, flagStyle(names), "\n");
        text += concat(indent, indent, indent, flag.description, "\n");
    }
    return text;
}

} // namespace pomvar

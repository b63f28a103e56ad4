#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pomvar {

// A small command-line flag parser.
//
// Arguments are read left to right. "---" ends the flags: every later argument is a plain
// parameter. An argument starting with "--" names one flag by its long name ("--name", or
// "--name=value" for a flag that takes a value); any other argument starting with "-" holds
// one or more short names, one character each ("-hv"). Anything else is a plain parameter.
// A flag that takes a value reads it from the rest of its argument or from the next one; as a
// short name it must come last in its group. Parsing stops at the first fault.
class FlagParser
{
public:
    struct Flag
    {
        std::optional<char> shortName;
        std::string longName;
        std::string description;
        bool takesValue = false;
        bool wasSet = false;
        std::optional<std::string> value;
    };

    using Style = std::function<std::string(std::string_view)>;

    // `arguments` is the whole argument vector, the program's own path first.
    explicit FlagParser(std::vector<std::string> arguments);

    // The returned flag stays valid as long as the parser.
    Flag& define(std::optional<char> shortName, std::string longName, std::string description);
    Flag& defineWithValue(std::optional<char> shortName,
                          std::string longName,
                          std::string description);

    // Parses the arguments; returns the fault's text, or nothing when all went well.
    std::optional<std::string> parsingFailure();

    // "usageName toolName synopsis", then "optionsName" and for each flag in definition order
    // its names after one indent and its description after three, each line ending in '\n'.
    std::string usageDescription(std::string_view usageName,
                                 std::string_view synopsis,
                                 const Style& usageStyle,
                                 std::string_view optionsName,
                                 const Style& flagStyle,
                                 std::string_view indent) const;

    const std::string& toolName() const { return m_toolName; }
    const std::vector<std::string>& parameters() const { return m_parameters; }
    const std::deque<Flag>& flags() const { return m_flags; }

private:
    enum class Fault
    {
        unknownFlag,
        malformedValue,
        illegalCombination,
        tooManyValues,
    };

    static std::string faultText(Fault fault, std::string_view name);
    Flag& add(Flag flag);
    std::optional<std::string> parseLong(std::string_view argument, std::size_t& next);
    std::optional<std::string> parseShorts(std::string_view argument, std::size_t& next);
    std::optional<std::string> setValue(Flag& flag, std::string_view name, std::string value);

    std::string m_toolName;
    std::vector<std::string> m_arguments;
    std::deque<Flag> m_flags;
    std::map<char, Flag*> m_byShortName;
    std::map<std::string, Flag*, std::less<>> m_byLongName;
    std::vector<std::string> m_parameters;
};

} // namespace pomvar

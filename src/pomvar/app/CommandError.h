#pragma once

#include <stdexcept>
#include <string>

namespace pomvar {

// Why a shell command run by execute() did not give its output.
class CommandError : public std::runtime_error
{
public:
    enum class Kind
    {
        commandFailed, // it ran and exited with a status other than 0; output() holds its output
        invalidData,   // its output is not UTF-8
    };

    static CommandError commandFailed(std::string output)
    {
        return CommandError(Kind::commandFailed, std::move(output));
    }
    static CommandError invalidData() { return CommandError(Kind::invalidData, {}); }

    Kind kind() const { return m_kind; }
    const std::string& output() const { return m_output; }

private:
    CommandError(Kind kind, std::string output);

    Kind m_kind;
    std::string m_output;
};

} // namespace pomvar

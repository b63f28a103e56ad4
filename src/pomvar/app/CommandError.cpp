#include "app/CommandError.h"

namespace pomvar {

namespace {

const char* describe(CommandError::Kind kind)
{
    switch (kind) {
        case CommandError::Kind::commandFailed:
            return "the command failed";
        case CommandError::Kind::invalidData:
            return "the command's output is not UTF-8";
    }
    return "the command failed";
}

} // namespace

CommandError::CommandError(Kind kind, std::string output)
    : std::runtime_error(describe(kind))
    , m_kind(kind)
    , m_output(std::move(output))
{}

} // namespace pomvar

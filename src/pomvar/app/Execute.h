#pragma once

#include "app/CommandError.h"

#include <string>
#include <string_view>

namespace pomvar {

// Runs `command` with "/bin/sh -c", waits for it to exit, and returns its standard output
// (standard input and error are inherited). Throws CommandError when it exits with a status
// other than 0 or its output is not UTF-8, and std::system_error when the shell cannot be
// started. The output is read only after the shell has exited, so it must fit in a pipe.
std::string execute(std::string_view command);

} // namespace pomvar

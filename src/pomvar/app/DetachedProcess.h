#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace pomvar {

// Starts `program` with `arguments` as a process that is not our child: it inherits the
// environment, the working directory and the standard streams, nobody here ever waits for it,
// and it lives on when we end. Returns once it runs `program`, or the reason it could not.
//
// A short-lived intermediate child starts it and exits at once, so the program is adopted by
// the system and never becomes a zombie of ours.
std::error_code startDetached(const std::string& program,
                              const std::vector<std::string>& arguments);

} // namespace pomvar

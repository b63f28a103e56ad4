#pragma once

#include "log/Output.h"

namespace pomvar {

// The start-up's lines: the command line, the PID file, the server's launch and wait
// ("pomvar.app"), written as log/Output.h says.
Q_DECLARE_LOGGING_CATEGORY(lcApp)

} // namespace pomvar

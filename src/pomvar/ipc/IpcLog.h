#pragma once

#include "log/Output.h"

namespace pomvar {

// The runtime link's lines: connection errors and the exchanges ("pomvar.ipc"), written as
// log/Output.h says.
Q_DECLARE_LOGGING_CATEGORY(lcIpc)

} // namespace pomvar

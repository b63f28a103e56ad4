#pragma once

#include "log/Output.h"

namespace pomvar {

// The tray item's lines ("pomvar.tray"), written as log/Output.h says.
Q_DECLARE_LOGGING_CATEGORY(lcTray)

} // namespace pomvar

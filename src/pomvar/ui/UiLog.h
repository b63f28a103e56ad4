#pragma once

#include "log/Output.h"

namespace pomvar {

// The panel's lines ("pomvar.ui"), written as log/Output.h says.
Q_DECLARE_LOGGING_CATEGORY(lcUi)

} // namespace pomvar

#pragma once

#include "log/Output.h"

namespace pomvar {

// The view model's lines: requests, menu builds, updates and notifications ("pomvar.model"),
// written as log/Output.h says.
Q_DECLARE_LOGGING_CATEGORY(lcModel)

} // namespace pomvar

#pragma once

#include <QLoggingCategory>

namespace pomvar::srv {

// The model layer's diagnostics ("pomvarsrv.model"), on standard error as every line of the
// server's (ServerLog); QT_LOGGING_RULES switches them per layer.
Q_DECLARE_LOGGING_CATEGORY(lcModel)

} // namespace pomvar::srv

#pragma once

#include <QLoggingCategory>

namespace pomvar::srv {

// The ui layer's diagnostics ("pomvarsrv.ui"), on standard error as every line of the
// server's (ServerLog); QT_LOGGING_RULES switches them per layer.
Q_DECLARE_LOGGING_CATEGORY(lcUi)

} // namespace pomvar::srv

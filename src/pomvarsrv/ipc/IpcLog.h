#pragma once

#include <QLoggingCategory>

namespace pomvar::srv {

// The ipc layer's diagnostics ("pomvarsrv.ipc"), on standard error as every line of the
// server's (ServerLog); QT_LOGGING_RULES switches them per layer.
Q_DECLARE_LOGGING_CATEGORY(lcIpc)

} // namespace pomvar::srv

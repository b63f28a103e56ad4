#pragma once

#include <QLoggingCategory>

namespace pomvar::srv {

// The server's own diagnostics: standard error only, never mixed with protocol data.
Q_DECLARE_LOGGING_CATEGORY(lcApp)

// Routes Qt's messages to standard error as "pomvarsrv: <message>" lines.
void installServerLog();

} // namespace pomvar::srv

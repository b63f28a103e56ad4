#pragma once

#include <QLoggingCategory>

namespace pomvar::srv {

// The catalogue layer's diagnostics ("pomvarsrv.catalogue"), on standard error as every line of the
// server's (ServerLog); QT_LOGGING_RULES switches them per layer.
Q_DECLARE_LOGGING_CATEGORY(lcCatalogue)

} // namespace pomvar::srv

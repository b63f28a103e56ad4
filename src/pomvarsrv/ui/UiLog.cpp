#include "pomvarsrv/ui/UiLog.h"

namespace pomvar::srv {

Q_LOGGING_CATEGORY(lcUi, "pomvarsrv.ui")

} // namespace pomvar::srv

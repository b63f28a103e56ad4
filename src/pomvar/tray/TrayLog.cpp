#include "tray/TrayLog.h"

namespace pomvar {

Q_LOGGING_CATEGORY(lcTray, "pomvar.tray")

} // namespace pomvar

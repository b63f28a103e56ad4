#include "pomvarsrv/ipc/IpcLog.h"

namespace pomvar::srv {

Q_LOGGING_CATEGORY(lcIpc, "pomvarsrv.ipc")

} // namespace pomvar::srv

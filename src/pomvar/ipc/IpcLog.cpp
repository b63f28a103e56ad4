#include "ipc/IpcLog.h"

namespace pomvar {

Q_LOGGING_CATEGORY(lcIpc, "pomvar.ipc")

} // namespace pomvar

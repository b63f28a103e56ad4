#include "app/AppLog.h"

namespace pomvar {

Q_LOGGING_CATEGORY(lcApp, "pomvar.app")

} // namespace pomvar

#include "pomvarsrv/model/ModelLog.h"

namespace pomvar::srv {

Q_LOGGING_CATEGORY(lcModel, "pomvarsrv.model")

} // namespace pomvar::srv

#include "model/ModelLog.h"

namespace pomvar {

Q_LOGGING_CATEGORY(lcModel, "pomvar.model")

} // namespace pomvar

#include "ui/UiLog.h"

namespace pomvar {

Q_LOGGING_CATEGORY(lcUi, "pomvar.ui")

} // namespace pomvar

#include "pomvarsrv/catalogue/CatalogueLog.h"

namespace pomvar::srv {

Q_LOGGING_CATEGORY(lcCatalogue, "pomvarsrv.catalogue")

} // namespace pomvar::srv

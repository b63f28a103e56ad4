#include "wire/Version.h"

namespace pomvar {

std::string_view version()
{
    return POMVAR_VERSION;
}

} // namespace pomvar

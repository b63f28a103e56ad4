#pragma once

#include "wire/RuntimeEndpoint.h"

#include <cstdint>
#include <string>

namespace pomvar {

// Where the runtime server listens. The program only ever uses the default value.
struct PomvarRT
{
    std::string address = wire::kRuntimeHost;
    std::int64_t port = wire::kRuntimePort;
};

} // namespace pomvar

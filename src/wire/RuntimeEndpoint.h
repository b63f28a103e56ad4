#pragma once

#include <cstdint>

namespace pomvar::wire {

// The runtime server's fixed endpoint: both programs hard-code it.
inline constexpr const char* kRuntimeHost = "localhost";
inline constexpr std::uint16_t kRuntimePort = 50818;

} // namespace pomvar::wire

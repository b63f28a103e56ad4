#pragma once

#include <cstdint>

namespace pomvar::wire {

// The runtime server's fixed endpoint: both programs hard-code it.
inline constexpr const char* kRuntimeHost = "localhost";
inline constexpr std::uint16_t kRuntimePort = 50818;
// The front end names itself to the server it starts, in the server's environment: the server
// cleans up after it when it is killed, and waits for its end before an update's restart.
inline constexpr const char* kFrontEndPidVariable = "POMVAR_FRONT_END_PID";

} // namespace pomvar::wire

#pragma once

#include <string_view>

namespace pomvar {

// The version of Pomvar: the CMake project version, compiled into one small translation unit of
// its own, so that a build of another version is only a relink.
std::string_view version();

} // namespace pomvar

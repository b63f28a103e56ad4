#pragma once

#include <cstddef>
#include <string_view>

namespace pomvar::wire {

// Strict UTF-8 check (simdjson's): no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);

// Number of code points in valid UTF-8 text. Counted here: simdjson 3.0 offers no count.
std::size_t utf8Length(std::string_view bytes);

} // namespace pomvar::wire

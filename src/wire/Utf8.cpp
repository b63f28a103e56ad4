#include "wire/Utf8.h"

#include <simdjson.h>

namespace pomvar::wire {

bool isValidUtf8(std::string_view bytes)
{
    return simdjson::validate_utf8(bytes.data(), bytes.size());
}

std::size_t utf8Length(std::string_view bytes)
{
    std::size_t count = 0;
    for (const char c : bytes)
        count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

} // namespace pomvar::wire

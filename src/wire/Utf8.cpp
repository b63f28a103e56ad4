#include "wire/Utf8.h"

#include <cstdint>
#include <cstring>

namespace pomvar::wire {

bool isValidUtf8(std::string_view bytes)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    while (p < end) {
        // Fast path over runs of ASCII, eight bytes at a time.
        while (end - p >= 8) {
            std::uint64_t word;
            std::memcpy(&word, p, sizeof word);
            if (word & 0x8080808080808080ULL)
                break;
            p += 8;
        }
        if (p == end)
            break;
        const unsigned char lead = *p;
        if (lead < 0x80) {
            ++p;
            continue;
        }
        int extra;
        std::uint32_t min;
        std::uint32_t cp;
        if ((lead & 0xE0) == 0xC0) {
            extra = 1, min = 0x80, cp = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            extra = 2, min = 0x800, cp = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            extra = 3, min = 0x10000, cp = lead & 0x07;
        } else {
            return false;
        }
        if (end - p <= extra)
            return false;
        for (int i = 1; i <= extra; ++i) {
            if ((p[i] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (p[i] & 0x3F);
        }
        if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        p += extra + 1;
    }
    return true;
}

std::size_t utf8Length(std::string_view bytes)
{
    std::size_t count = 0;
    for (const char c : bytes)
        count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

} // namespace pomvar::wire

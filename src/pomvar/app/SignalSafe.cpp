#include "app/SignalSafe.h"

#include <cerrno>
#include <initializer_list>
#include <unistd.h>

namespace pomvar::signal_safe {

namespace {

void writeAll(const char* text, std::size_t size) noexcept
{
    while (size > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, text, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        text += written;
        size -= static_cast<std::size_t>(written);
    }
}

} // namespace

void writeLine(const char* text, const char* detail) noexcept
{
    char line[512];
    std::size_t size = 0;
    for (const char* part : { text, detail ? detail : "" }) {
        for (; *part && size < sizeof line - 1; ++part)
            line[size++] = *part;
    }
    line[size++] = '\n';
    writeAll(line, size);
}

void writeLine(const char* text, long number) noexcept
{
    char digits[24];
    char* end = digits + sizeof digits;
    char* start = end;
    *--start = '\0';
    const bool negative = number < 0;
    unsigned long rest =
        negative ? 0UL - static_cast<unsigned long>(number) : static_cast<unsigned long>(number);
    do {
        *--start = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (negative)
        *--start = '-';
    writeLine(text, start);
}

} // namespace pomvar::signal_safe

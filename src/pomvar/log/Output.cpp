#include "log/Output.h"

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace pomvar {

namespace {

void writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

void printLine(std::string_view line)
{
    std::string text(line);
    text.push_back('\n');
    writeAll(STDOUT_FILENO, text);
}

void fatalStop(std::string_view message)
{
    std::string text = "Fatal error: ";
    text.append(message);
    text.push_back('\n');
    writeAll(STDERR_FILENO, text);
    std::abort();
}

} // namespace pomvar

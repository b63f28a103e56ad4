#include "app/Execute.h"

#include "wire/Utf8.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char** environ;

namespace pomvar {

namespace {

// Closes a descriptor when it goes out of scope.
class Fd
{
public:
    explicit Fd(int fd = -1)
        : m_fd(fd)
    {}
    ~Fd() { reset(); }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return m_fd; }
    void reset()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
    }

private:
    int m_fd;
};

[[noreturn]] void throwErrno(int error, const char* what)
{
    throw std::system_error(error, std::generic_category(), what);
}

} // namespace

std::string execute(std::string_view command)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throwErrno(errno, "pipe2");
    Fd readEnd(ends[0]);
    Fd writeEnd(ends[1]);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDOUT_FILENO);
    std::string commandText(command);
    char sh[] = "/bin/sh";
    char dashC[] = "-c";
    char* argv[] = { sh, dashC, commandText.data(), nullptr };
    pid_t pid = 0;
    const int spawned = ::posix_spawn(&pid, sh, &actions, nullptr, argv, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        throwErrno(spawned, "/bin/sh");
    writeEnd.reset();

    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            throwErrno(errno, "waitpid");
    }

    std::string output;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(readEnd.get(), buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        output.append(buffer, static_cast<std::size_t>(got));
    }

    if (!wire::isValidUtf8(output))
        throw CommandError::invalidData();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw CommandError::commandFailed(std::move(output));
    return output;
}

} // namespace pomvar

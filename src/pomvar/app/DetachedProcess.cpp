#include "app/DetachedProcess.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pomvar {

namespace {

void writeErrno(int fd, int error)
{
    while (::write(fd, &error, sizeof error) < 0 && errno == EINTR) {
    }
}

} // namespace

std::error_code startDetached(const std::string& program, const std::vector<std::string>& arguments)
{
    // Everything the children need is prepared here: after fork() only async-signal-safe
    // calls are made.
    std::vector<std::string> argvText;
    argvText.reserve(arguments.size() + 1);
    argvText.push_back(program);
    argvText.insert(argvText.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& argument : argvText)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    // The grandchild reports a failed exec through this pipe; a successful exec closes it.
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return { errno, std::generic_category() };

    const pid_t intermediate = ::fork();
    if (intermediate < 0) {
        const int error = errno;
        ::close(ends[0]);
        ::close(ends[1]);
        return { error, std::generic_category() };
    }
    if (intermediate == 0) {
        ::close(ends[0]);
        const pid_t server = ::fork();
        if (server < 0) {
            writeErrno(ends[1], errno);
            ::_exit(1);
        }
        if (server == 0) {
            ::execv(program.c_str(), argv.data());
            writeErrno(ends[1], errno);
            ::_exit(127);
        }
        ::_exit(0);
    }

    ::close(ends[1]);
    while (::waitpid(intermediate, nullptr, 0) < 0 && errno == EINTR) {
    }
    int error = 0;
    ssize_t got;
    while ((got = ::read(ends[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    ::close(ends[0]);
    if (got == static_cast<ssize_t>(sizeof error))
        return { error, std::generic_category() };
    return {};
}

} // namespace pomvar

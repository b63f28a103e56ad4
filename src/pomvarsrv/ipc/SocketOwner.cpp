#include "pomvarsrv/ipc/SocketOwner.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string_view>

namespace pomvar::srv {

namespace {

// Calls `each` with every process id in /proc until it returns true.
template <typename Each>
bool anyProcess(Each each)
{
    DIR* proc = ::opendir("/proc");
    if (!proc)
        return false;
    bool found = false;
    while (const dirent* entry = ::readdir(proc)) {
        char* end = nullptr;
        const long pid = std::strtol(entry->d_name, &end, 10);
        if (pid > 0 && *end == '\0' && each(static_cast<pid_t>(pid))) {
            found = true;
            break;
        }
    }
    ::closedir(proc);
    return found;
}

bool sameFile(const char* a, const char* b)
{
    struct stat first, second;
    return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && first.st_ino == second.st_ino &&
           first.st_dev == second.st_dev;
}

} // namespace

bool SocketOwner::holds(pid_t pid, unsigned long long inode)
{
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%d/fd", static_cast<int>(pid));
    const int dirFd = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFd < 0)
        return false; // gone, or not ours to look into
    DIR* fds = ::fdopendir(dirFd);
    if (!fds) {
        ::close(dirFd);
        return false;
    }
    char expected[48];
    const int length = std::snprintf(expected, sizeof expected, "socket:[%llu]", inode);
    bool found = false;
    while (const dirent* entry = ::readdir(fds)) {
        if (entry->d_name[0] == '.')
            continue;
        char target[48];
        const ssize_t size = ::readlinkat(dirFd, entry->d_name, target, sizeof target);
        if (size == length && std::memcmp(target, expected, size_t(length)) == 0) {
            found = true;
            break;
        }
    }
    ::closedir(fds);
    return found;
}

std::optional<pid_t> SocketOwner::find(unsigned long long inode, pid_t likely)
{
    if (likely > 0 && holds(likely, inode))
        return likely;
    std::optional<pid_t> owner;
    anyProcess([&](pid_t pid) {
        if (pid == likely || !holds(pid, inode))
            return false;
        owner = pid;
        return true;
    });
    return owner;
}

bool SocketOwner::sharesNamespaces(pid_t pid)
{
    for (const char* kind : { "user", "mnt" }) {
        char theirs[64];
        char ours[64];
        std::snprintf(theirs, sizeof theirs, "/proc/%d/ns/%s", static_cast<int>(pid), kind);
        std::snprintf(ours, sizeof ours, "/proc/self/ns/%s", kind);
        if (!sameFile(theirs, ours))
            return false;
    }
    return true;
}

std::string SocketOwner::commandName(pid_t pid)
{
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%d/comm", static_cast<int>(pid));
    std::FILE* file = std::fopen(path, "re");
    if (!file)
        return {};
    char name[64] = {};
    const bool read = std::fgets(name, sizeof name, file) != nullptr;
    std::fclose(file);
    std::string command = read ? name : "";
    if (!command.empty() && command.back() == '\n')
        command.pop_back();
    return command;
}

bool SocketOwner::runs(unsigned uid, const std::string& command)
{
    return anyProcess([&](pid_t pid) {
        char path[64];
        std::snprintf(path, sizeof path, "/proc/%d", static_cast<int>(pid));
        struct stat info;
        return ::stat(path, &info) == 0 && info.st_uid == uid && commandName(pid) == command;
    });
}

} // namespace pomvar::srv

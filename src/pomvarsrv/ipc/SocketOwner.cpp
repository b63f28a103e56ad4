#include "pomvarsrv/ipc/SocketOwner.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

namespace pomvar::srv {

namespace {

std::vector<pid_t> processes()
{
    std::vector<pid_t> pids;
    DIR* proc = ::opendir("/proc");
    if (!proc)
        return pids;
    while (const dirent* entry = ::readdir(proc)) {
        char* end = nullptr;
        const long pid = std::strtol(entry->d_name, &end, 10);
        if (pid > 0 && *end == '\0')
            pids.push_back(static_cast<pid_t>(pid));
    }
    ::closedir(proc);
    return pids;
}

// Calls `each` with the inode of every socket `pid` holds until it returns true; whether it did.
bool anySocket(pid_t pid, const std::function<bool(SocketOwner::Inode)>& each)
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
    static constexpr char kPrefix[] = "socket:[";
    bool found = false;
    while (const dirent* entry = ::readdir(fds)) {
        if (entry->d_name[0] == '.')
            continue;
        char target[48];
        const ssize_t size = ::readlinkat(dirFd, entry->d_name, target, sizeof target - 1);
        if (size <= 0 || std::strncmp(target, kPrefix, sizeof kPrefix - 1) != 0)
            continue;
        target[size] = '\0';
        if (each(std::strtoull(target + sizeof kPrefix - 1, nullptr, 10))) {
            found = true;
            break;
        }
    }
    ::closedir(fds);
    return found;
}

constexpr const char* kNamespaces[] = { "user", "mnt" };

// A namespace's identity: the device and inode of its /proc link; nothing when unreadable.
std::optional<std::pair<dev_t, ino_t>> namespaceOf(const std::string& pid, const char* kind)
{
    struct stat info = {};
    if (::stat(("/proc/" + pid + "/ns/" + kind).c_str(), &info) != 0)
        return std::nullopt;
    return std::pair(info.st_dev, info.st_ino);
}

} // namespace

bool SocketOwner::holds(pid_t pid, Inode inode)
{
    return anySocket(pid, [inode](Inode held) { return held == inode; });
}

std::optional<pid_t> SocketOwner::find(Inode inode, pid_t likely)
{
    if (likely > 0 && holds(likely, inode))
        return likely;
    const auto found = findAll({ inode });
    return found.empty() ? std::nullopt : std::optional(found.begin()->second);
}

std::unordered_map<SocketOwner::Inode, pid_t> SocketOwner::findAll(
    const std::unordered_set<Inode>& inodes)
{
    std::unordered_map<Inode, pid_t> holders;
    std::vector<pid_t> pids = processes();
    std::sort(pids.begin(), pids.end(), std::greater<>());
    for (const pid_t pid : pids) {
        const bool all = anySocket(pid, [&](Inode held) {
            if (inodes.count(held))
                holders.emplace(held, pid);
            return holders.size() == inodes.size();
        });
        if (all)
            break;
    }
    return holders;
}

std::optional<bool> SocketOwner::sharesNamespaces(pid_t pid)
{
    // Ours, read once: a process does not change namespaces while it serves.
    static const std::optional<std::pair<dev_t, ino_t>> ours[] = {
        namespaceOf("self", kNamespaces[0]), namespaceOf("self", kNamespaces[1])
    };
    const std::string process = std::to_string(pid);
    bool shares = true;
    for (std::size_t kind = 0; kind < std::size(kNamespaces); ++kind) {
        const auto theirs = namespaceOf(process, kNamespaces[kind]);
        if (!theirs || !ours[kind])
            return std::nullopt;
        shares = shares && *theirs == *ours[kind];
    }
    return shares;
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
    for (const pid_t pid : processes()) {
        char path[64];
        std::snprintf(path, sizeof path, "/proc/%d", static_cast<int>(pid));
        struct stat info;
        if (::stat(path, &info) == 0 && info.st_uid == uid && commandName(pid) == command)
            return true;
    }
    return false;
}

} // namespace pomvar::srv

#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace pomvar::srv {

// The processes that hold sockets, found by the sockets' inodes among the processes whose open
// files this user may read (its own): /proc/<pid>/fd names a socket "socket:[inode]". Another
// user's processes cannot be looked into. A search reads every process's open files: it belongs
// off the GUI thread (HolderSearch).
class SocketOwner
{
public:
    using Inode = unsigned long long;

    // The holder of the socket; `likely` is looked at before every other process.
    static std::optional<pid_t> find(Inode inode, pid_t likely = 0);
    // A holder of each socket that one is found for, in one pass over the processes, the
    // newest first: a client that just connected is most often a process that just started.
    static std::unordered_map<Inode, pid_t> findAll(const std::unordered_set<Inode>& inodes);
    // Whether `pid` holds the socket: a look at that one process's open files.
    static bool holds(pid_t pid, Inode inode);
    // Whether the process runs in this process's user and mount namespaces: a sandbox that
    // shares the network (Flatpak, bubblewrap, a Snap, a rootless container) does not. Nothing
    // when the process is gone: a child that shared its parent's socket often ends first.
    static std::optional<bool> sharesNamespaces(pid_t pid);
    // The process's command name (/proc/<pid>/comm); empty when it is gone.
    static std::string commandName(pid_t pid);
    // Whether any process of `uid` is named `command`.
    static bool runs(unsigned uid, const std::string& command);
};

} // namespace pomvar::srv

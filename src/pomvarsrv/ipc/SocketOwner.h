#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace pomvar::srv {

// The process that holds a socket, found by the socket's inode among the processes whose open
// files this user may read (its own): /proc/<pid>/fd names a socket "socket:[inode]". Another
// user's processes cannot be looked into.
class SocketOwner
{
public:
    // The holder of the socket; `likely` is looked at before every other process.
    static std::optional<pid_t> find(unsigned long long inode, pid_t likely = 0);
    // Whether `pid` holds the socket.
    static bool holds(pid_t pid, unsigned long long inode);
    // Whether the process runs in this process's user and mount namespaces: a sandbox that
    // shares the network (Flatpak, bubblewrap, a rootless container) does not.
    static bool sharesNamespaces(pid_t pid);
    // The process's command name (/proc/<pid>/comm); empty when it is gone.
    static std::string commandName(pid_t pid);
    // Whether any process of `uid` is named `command`.
    static bool runs(unsigned uid, const std::string& command);
};

} // namespace pomvar::srv

#pragma once

#include "pomvarsrv/ipc/SocketOwner.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace pomvar::srv {

// Finds the processes holding sockets on a thread of its own: a search reads the open files of
// every process, which takes long with many processes or sockets. The requests made while a
// search runs are answered together by the next one, so a flood of connections costs a few
// searches, not one each.
class HolderSearch
{
public:
    using Found = std::function<void(std::optional<pid_t> holder)>;

    HolderSearch() = default;
    // Waits for the search that runs; the requests not yet searched are dropped.
    ~HolderSearch();
    HolderSearch(const HolderSearch&) = delete;
    HolderSearch& operator=(const HolderSearch&) = delete;

    // `found` is called on the search thread.
    void find(SocketOwner::Inode inode, Found found);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::vector<std::pair<SocketOwner::Inode, Found>> m_requests;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace pomvar::srv

#include "pomvarsrv/ipc/HolderSearch.h"

#include <pthread.h>
#include <sched.h>

namespace pomvar::srv {

HolderSearch::~HolderSearch()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void HolderSearch::find(SocketOwner::Inode inode, Found found)
{
    {
        std::lock_guard lock(m_mutex);
        m_requests.emplace_back(inode, std::move(found));
        // Started at the first request: most servers only ever serve their front end.
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }
    m_wake.notify_one();
}

void HolderSearch::run()
{
    pthread_setname_np(pthread_self(), "holder search");
    // A batch thread never preempts the GUI thread that wakes it: on a busy machine the GUI
    // thread would otherwise lose its core for a time slice on every search it asks for.
    const sched_param batch{};
    pthread_setschedparam(pthread_self(), SCHED_BATCH, &batch);
    for (;;) {
        std::vector<std::pair<SocketOwner::Inode, Found>> requests;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stopping || !m_requests.empty(); });
            if (m_stopping)
                return;
            requests.swap(m_requests);
        }
        std::unordered_set<SocketOwner::Inode> inodes;
        for (const auto& request : requests)
            inodes.insert(request.first);
        const auto holders = SocketOwner::findAll(inodes);
        for (const auto& [inode, found] : requests) {
            const auto holder = holders.find(inode);
            found(holder == holders.end() ? std::nullopt : std::optional(holder->second));
        }
    }
}

} // namespace pomvar::srv

#include "ipc/RuntimeConnection.h"

#include "ipc/JsonDocument.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace pomvar {

namespace {

// Bytes read ahead of the pending receives before reading pauses.
constexpr std::size_t kReadAhead = 1 << 20;
constexpr std::size_t kReadChunk = 64 * 1024;

std::error_code lastError()
{
    return { errno, std::system_category() };
}

class ResolverCategory : public std::error_category
{
public:
    const char* name() const noexcept override { return "resolver"; }
    std::string message(int code) const override { return gai_strerror(code); }
};

std::error_code resolverError(int code)
{
    static const ResolverCategory category;
    return { code, category };
}

} // namespace

RuntimeConnection::RuntimeConnection(std::string host, std::uint16_t port, std::string queueLabel)
    : m_host(std::move(host))
    , m_port(port)
    , m_queueLabel(std::move(queueLabel))
{
    m_wakeFd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
}

RuntimeConnection::~RuntimeConnection()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
        wakeLocked();
    }
    if (m_thread.joinable())
        m_thread.join();
    if (m_fd >= 0)
        ::close(m_fd);
    if (m_wakeFd >= 0)
        ::close(m_wakeFd);
}

void RuntimeConnection::setStateHandler(StateHandler handler)
{
    m_stateHandler = std::move(handler);
}

void RuntimeConnection::start()
{
    m_thread = std::thread([this] { run(); });
}

void RuntimeConnection::send(std::vector<Chunk> batch)
{
    std::lock_guard lock(m_mutex);
    writeLocked(&batch);
}

void RuntimeConnection::receive(std::size_t length, ReceiveCompletion completion)
{
    std::lock_guard lock(m_mutex);
    m_receives.push_back({ length, std::move(completion) });
    // The queue thread already sleeps in poll() waiting for input in the common case: the
    // reply itself wakes it. Wake it when it is not watching the socket, or when what this
    // receive needs (or the end of the stream) is already in.
    const bool answerable = bufferedLocked() >= length || m_inputEnded || m_readError;
    if (!isQueueThread() && (!m_pollingInput || answerable))
        wakeLocked();
}

void RuntimeConnection::recycle(std::string buffer)
{
    std::lock_guard lock(m_mutex);
    if (buffer.capacity() > kReadChunk && buffer.capacity() > m_spareIn.capacity())
        m_spareIn = std::move(buffer);
}

void RuntimeConnection::wakeLocked()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeFd, &one, sizeof one);
}

void RuntimeConnection::setState(State state, std::error_code error)
{
    {
        std::lock_guard lock(m_mutex);
        m_state = state;
    }
    if (m_stateHandler)
        m_stateHandler(state, error);
}

void RuntimeConnection::run()
{
    const std::string threadName = m_queueLabel.substr(0, 15);
    pthread_setname_np(pthread_self(), threadName.c_str());

    setState(State::preparing);
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const std::string service = std::to_string(m_port);
    if (const int rc = ::getaddrinfo(m_host.c_str(), service.c_str(), &hints, &found); rc != 0) {
        setState(State::waiting, rc == EAI_SYSTEM ? lastError() : resolverError(rc));
    } else {
        for (const addrinfo* ai = found; ai; ai = ai->ai_next) {
            const auto* bytes = reinterpret_cast<const unsigned char*>(ai->ai_addr);
            m_addresses.emplace_back(bytes, bytes + ai->ai_addrlen);
            m_addressLengths.push_back(ai->ai_addrlen);
        }
        ::freeaddrinfo(found);
        connectNext();
    }

    for (;;) {
        std::vector<std::function<void()>> tasks;
        {
            std::lock_guard lock(m_mutex);
            if (m_stopping)
                return;
            tasks.swap(m_tasks);
        }
        for (auto& task : tasks)
            task();
        deliverReceives();

        pollfd fds[2] = { { m_wakeFd, POLLIN, 0 }, { -1, 0, 0 } };
        {
            std::lock_guard lock(m_mutex);
            if (!m_tasks.empty())
                continue;
            m_pollingInput = false;
            if (m_fd >= 0 && m_connecting) {
                fds[1] = { m_fd, POLLOUT, 0 };
            } else if (m_connected) {
                if (!m_out.empty())
                    fds[1].events |= POLLOUT;
                if (wantsInputLocked()) {
                    fds[1].events |= POLLIN;
                    m_pollingInput = true;
                }
                // A hung-up socket reports POLLHUP whatever is asked: only watch it when needed.
                if (fds[1].events != 0)
                    fds[1].fd = m_fd;
            }
        }
        if (::poll(fds, 2, -1) < 0)
            continue;
        if (fds[0].revents & POLLIN) {
            std::uint64_t count;
            [[maybe_unused]] const auto readBytes = ::read(m_wakeFd, &count, sizeof count);
        }
        if (fds[1].fd < 0 || fds[1].revents == 0)
            continue;
        if (m_connecting) {
            finishConnect();
            continue;
        }
        if (fds[1].revents & (POLLIN | POLLHUP | POLLERR))
            readSome();
        if (fds[1].revents & POLLOUT) {
            std::lock_guard lock(m_mutex);
            writeLocked(nullptr);
        }
    }
}

void RuntimeConnection::connectNext()
{
    while (m_nextAddress < m_addresses.size()) {
        const auto* address = reinterpret_cast<const sockaddr*>(m_addresses[m_nextAddress].data());
        const socklen_t length = m_addressLengths[m_nextAddress];
        ++m_nextAddress;
        const int fd = ::socket(address->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (fd < 0) {
            if (!m_firstConnectError)
                m_firstConnectError = lastError();
            continue;
        }
        m_fd = fd;
        if (::connect(fd, address, length) == 0) {
            finishConnect();
            return;
        }
        if (errno == EINPROGRESS) {
            m_connecting = true;
            return;
        }
        const std::error_code error = lastError();
        m_refused = m_refused || error == std::errc::connection_refused;
        if (!m_firstConnectError)
            m_firstConnectError = error;
        ::close(fd);
        m_fd = -1;
    }
    // Every address failed: a refusal anywhere means nothing listens.
    setState(State::waiting,
             m_refused ? std::make_error_code(std::errc::connection_refused) : m_firstConnectError);
}

void RuntimeConnection::finishConnect()
{
    m_connecting = false;
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(m_fd, SOL_SOCKET, SO_ERROR, &error, &size) < 0)
        error = errno;
    if (error != 0) {
        m_refused = m_refused || error == ECONNREFUSED;
        if (!m_firstConnectError)
            m_firstConnectError = { error, std::system_category() };
        ::close(m_fd);
        m_fd = -1;
        connectNext();
        return;
    }
    const int on = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    {
        std::lock_guard lock(m_mutex);
        m_connected = true;
    }
    setState(State::ready);
}

void RuntimeConnection::writeLocked(std::vector<Chunk>* batch)
{
    const bool canWrite = m_connected;
    std::vector<iovec> parts;
    if (canWrite && !m_out.empty())
        parts.push_back({ m_out.data(), m_out.size() });
    if (batch) {
        for (auto& chunk : *batch) {
            if (canWrite && m_out.empty())
                parts.push_back({ chunk.bytes.data(), chunk.bytes.size() });
        }
    }
    std::size_t written = 0;
    if (!parts.empty()) {
        msghdr message{};
        message.msg_iov = parts.data();
        message.msg_iovlen = parts.size();
        ssize_t result;
        do {
            result = ::sendmsg(m_fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        } while (result < 0 && errno == EINTR);
        if (result < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
            const std::error_code error = lastError();
            if (batch) {
                for (auto& chunk : *batch)
                    m_outCompletions.emplace_back(m_out.size(), std::move(chunk.completion));
            }
            failWritesLocked(error);
            return;
        }
        written = result > 0 ? static_cast<std::size_t>(result) : 0;
    }

    // Everything is accounted in m_out offsets: queue the batch behind what is pending, then
    // drop what the kernel took and settle the completions of the chunks written whole.
    if (batch) {
        for (auto& chunk : *batch) {
            m_out.append(chunk.bytes);
            m_outCompletions.emplace_back(m_out.size(), std::move(chunk.completion));
        }
    }
    m_out.erase(0, written);
    while (!m_outCompletions.empty() && m_outCompletions.front().first <= written) {
        if (auto completion = std::move(m_outCompletions.front().second))
            m_tasks.push_back([completion = std::move(completion)] { completion({}); });
        m_outCompletions.pop_front();
    }
    for (auto& pending : m_outCompletions)
        pending.first -= written;
    // Successful completions wait for the queue's next turn; left-over bytes need it now.
    if (!m_out.empty() && !isQueueThread())
        wakeLocked();
}

void RuntimeConnection::failWritesLocked(std::error_code error)
{
    for (auto& pending : m_outCompletions) {
        if (auto completion = std::move(pending.second))
            m_tasks.push_back([completion = std::move(completion), error] { completion(error); });
    }
    m_outCompletions.clear();
    m_out.clear();
    if (!isQueueThread())
        wakeLocked();
}

bool RuntimeConnection::wantsInputLocked() const
{
    if (m_inputEnded || m_readError)
        return false;
    const std::size_t wanted = m_receives.empty() ? 0 : m_receives.front().length;
    return bufferedLocked() < std::max(wanted, kReadAhead);
}

void RuntimeConnection::readSome()
{
    std::lock_guard lock(m_mutex);
    // A large pending receive is read to its exact end at the start of the buffer, so that its
    // bytes can be moved out whole rather than copied.
    const std::size_t wanted = m_receives.empty() ? 0 : m_receives.front().length;
    const bool large = wanted > kReadChunk;
    if (m_inStart > 0 && (m_inStart == m_inEnd || m_inStart >= kReadChunk || large)) {
        m_in.erase(0, m_inStart);
        m_inEnd -= m_inStart;
        m_inStart = 0;
    }
    std::size_t room = kReadChunk;
    if (large && bufferedLocked() < wanted)
        room = wanted - bufferedLocked();
    // The room is made once, not on every read: zero-filling what is still to come of a large
    // body at each partial read would cost more than the reads.
    if (m_in.size() < m_inEnd + room) {
        // Spare capacity past the end lets the JSON parser read the body in place.
        const std::size_t capacity = m_inEnd + room + JsonDocument::kPadding;
        if (large && m_in.capacity() < capacity && m_spareIn.capacity() >= capacity) {
            m_spareIn.assign(m_in, 0, m_inEnd);
            m_in = std::exchange(m_spareIn, {});
        } else if (large) {
            m_in.reserve(capacity);
        }
        m_in.resize(m_inEnd + room);
    }
    ssize_t result;
    do {
        result = ::recv(m_fd, m_in.data() + m_inEnd, room, MSG_DONTWAIT);
    } while (result < 0 && errno == EINTR);
    if (result > 0)
        m_inEnd += static_cast<std::size_t>(result);
    if (result == 0) {
        m_inputEnded = true;
    } else if (result < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
        m_readError = lastError();
        m_tasks.push_back([this, error = m_readError] { setState(State::failed, error); });
    }
}

void RuntimeConnection::deliverReceives()
{
    for (;;) {
        ReceiveCompletion completion;
        std::optional<std::string> data;
        std::error_code error;
        {
            std::lock_guard lock(m_mutex);
            if (m_receives.empty())
                return;
            const std::size_t length = m_receives.front().length;
            if (bufferedLocked() >= length) {
                if (m_inStart == 0 && m_inEnd == length) {
                    m_in.resize(length);
                    data = std::move(m_in);
                    m_in.clear();
                    m_inEnd = 0;
                } else {
                    data = m_in.substr(m_inStart, length);
                    m_inStart += length;
                }
            } else if (m_readError) {
                error = m_readError;
            } else if (!m_inputEnded) {
                return;
            }
            completion = std::move(m_receives.front().completion);
            m_receives.pop_front();
        }
        if (completion)
            completion(std::move(data), error);
    }
}

} // namespace pomvar

#include "FakeRuntimeServer.h"

#include "wire/Frame.h"
#include "wire/FrameDecoder.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::test {

namespace {

bool writeAll(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t n = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

} // namespace

FakeRuntimeServer::Reply FakeRuntimeServer::Reply::fromScript(const nlohmann::json& script)
{
    Reply reply;
    if (script.contains("json"))
        reply = json(script["json"]);
    else if (script.contains("text"))
        reply = text(script["text"].get<std::string>());
    const std::string kind = script.value("kind", "");
    if (kind == "none")
        reply = noReply();
    else if (kind == "empty")
        reply = empty();
    else if (kind == "close")
        reply = close();
    reply.chunkSize = script.value("chunk", std::size_t{ 0 });
    return reply;
}

FakeRuntimeServer::FakeRuntimeServer(std::uint16_t port)
    : m_port(port)
    , m_defaults(standardReplies())
{
    m_wakeFd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

FakeRuntimeServer::~FakeRuntimeServer()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    wake();
    if (m_thread.joinable())
        m_thread.join();
    if (m_listenFd >= 0)
        ::close(m_listenFd);
    if (m_placeholderFd >= 0)
        ::close(m_placeholderFd);
    ::close(m_wakeFd);
}

bool FakeRuntimeServer::listen()
{
    if (!bindAndListen(16))
        return false;
    m_thread = std::thread([this] { serve(); });
    return true;
}

bool FakeRuntimeServer::listenHoldingConnections()
{
    if (!bindAndListen(0))
        return false;
    // A backlog of 0 admits one queued connection: fill it so that every later SYN is dropped.
    m_placeholderFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(m_port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(m_placeholderFd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

void FakeRuntimeServer::release()
{
    const int placeholder = ::accept4(m_listenFd, nullptr, nullptr, SOCK_CLOEXEC);
    if (placeholder >= 0)
        ::close(placeholder);
    ::close(m_placeholderFd);
    m_placeholderFd = -1;
    m_thread = std::thread([this] { serve(); });
}

bool FakeRuntimeServer::bindAndListen(int backlog)
{
    m_listenFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(m_listenFd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(m_port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(m_listenFd, reinterpret_cast<sockaddr*>(&address), sizeof address) < 0 ||
        ::listen(m_listenFd, backlog) < 0) {
        ::close(m_listenFd);
        m_listenFd = -1;
        return false;
    }
    socklen_t size = sizeof address;
    ::getsockname(m_listenFd, reinterpret_cast<sockaddr*>(&address), &size);
    m_port = ntohs(address.sin_port);
    return true;
}

void FakeRuntimeServer::setDefaultReply(const std::string& id, Reply reply)
{
    std::lock_guard lock(m_mutex);
    m_defaults[id] = std::move(reply);
}

void FakeRuntimeServer::queueReply(const std::string& id, Reply reply)
{
    std::lock_guard lock(m_mutex);
    m_queued[id].push_back(std::move(reply));
}

std::vector<std::string> FakeRuntimeServer::requests() const
{
    std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<std::string> FakeRuntimeServer::requestIds() const
{
    std::vector<std::string> ids;
    for (const auto& body : requests())
        ids.push_back(requestId(body));
    return ids;
}

void FakeRuntimeServer::clearRequests()
{
    std::lock_guard lock(m_mutex);
    m_requests.clear();
}

bool FakeRuntimeServer::waitForRequests(std::size_t count, int timeoutMs) const
{
    std::unique_lock lock(m_mutex);
    return m_requestArrived.wait_for(
        lock, std::chrono::milliseconds(timeoutMs), [&] { return m_requests.size() >= count; });
}

std::size_t FakeRuntimeServer::connectionCount() const
{
    std::lock_guard lock(m_mutex);
    return m_connections;
}

void FakeRuntimeServer::setRequestObserver(std::function<void(const std::string&)> observer)
{
    std::lock_guard lock(m_mutex);
    m_observer = std::move(observer);
}

bool FakeRuntimeServer::expectsReply(std::string_view id)
{
    static const std::vector<std::string_view> awaited = {
        "get-app-status",       "get-user-prefs",           "get-menu-data-modified-status",
        "get-myapps-menu-data", "get-recentapps-menu-data", "get-allapps-menu-data",
        "toggle-set-appcat",    "check-update-available",   "get-app-update-status"
    };
    for (const auto candidate : awaited) {
        if (candidate == id)
            return true;
    }
    return false;
}

std::string FakeRuntimeServer::requestId(std::string_view body)
{
    constexpr std::string_view marker = "\"id\": \"";
    const auto start = body.find(marker);
    if (start == std::string_view::npos)
        return {};
    const auto from = start + marker.size();
    const auto end = body.find('"', from);
    return std::string(body.substr(from, end == std::string_view::npos ? end : end - from));
}

std::map<std::string, FakeRuntimeServer::Reply> FakeRuntimeServer::standardReplies()
{
    using nlohmann::json;
    return {
        { "get-app-status", Reply::json({ { "ready", true }, { "updateFinished", false } }) },
        { "get-user-prefs",
          Reply::json({ { "MenuDensity", 0 },
                        { "AnimationFx", true },
                        { "SaveExpAppCats", true },
                        { "SaveLastMenu", true },
                        { "OneExpAppCat", false } }) },
        { "get-menu-data-modified-status",
          Reply::json({ { "appFolderModified", false },
                        { "recentAppsModified", false },
                        { "appcatsModified", false },
                        { "pinnedAppsModified", false } }) },
        { "get-allapps-menu-data", Reply::json(json::array()) },
        { "get-recentapps-menu-data", Reply::json(json::array()) },
        { "get-myapps-menu-data",
          Reply::json({ { "pinnedapps", json::array() },
                        { "appcats", json::array() },
                        { "appcatapps", json::object() },
                        { "renamedAppcats", json::array() } }) },
        { "toggle-set-appcat", Reply::json({ { "isset", true } }) },
        { "check-update-available", Reply::json({ { "isUpdateAvailable", false } }) },
        { "get-app-update-status", Reply::json({ { "status", "noUpdate" } }) },
    };
}

bool FakeRuntimeServer::hasQueuedReply(const std::string& id) const
{
    std::lock_guard lock(m_mutex);
    const auto queued = m_queued.find(id);
    return queued != m_queued.end() && !queued->second.empty();
}

FakeRuntimeServer::Reply FakeRuntimeServer::takeReply(const std::string& id)
{
    std::lock_guard lock(m_mutex);
    if (auto queued = m_queued.find(id); queued != m_queued.end() && !queued->second.empty()) {
        Reply reply = std::move(queued->second.front());
        queued->second.pop_front();
        return reply;
    }
    if (auto found = m_defaults.find(id); found != m_defaults.end())
        return found->second;
    return Reply::noReply();
}

void FakeRuntimeServer::wake()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto n = ::write(m_wakeFd, &one, sizeof one);
}

void FakeRuntimeServer::serve()
{
    // Every accepted connection is served, each with its own framing state.
    std::map<int, wire::RequestDecoder> clients;
    for (;;) {
        {
            std::lock_guard lock(m_mutex);
            if (m_stopping)
                break;
        }
        std::vector<pollfd> fds = { { m_wakeFd, POLLIN, 0 }, { m_listenFd, POLLIN, 0 } };
        for (const auto& client : clients)
            fds.push_back({ client.first, POLLIN, 0 });
        if (::poll(fds.data(), fds.size(), -1) < 0)
            continue;
        if (fds[0].revents)
            continue;
        if (fds[1].revents) {
            const int client = ::accept4(m_listenFd, nullptr, nullptr, SOCK_CLOEXEC);
            if (client >= 0) {
                const int on = 1;
                ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
                clients.emplace(client, wire::RequestDecoder());
                std::lock_guard lock(m_mutex);
                ++m_connections;
            }
        }
        for (std::size_t i = 2; i < fds.size(); ++i) {
            if (!fds[i].revents)
                continue;
            const int client = fds[i].fd;
            char buffer[65536];
            const ssize_t n = ::recv(client, buffer, sizeof buffer, 0);
            bool closeClient = n <= 0;
            if (n > 0) {
                auto& decoder = clients.at(client);
                decoder.feed(std::string_view(buffer, static_cast<std::size_t>(n)));
                std::string body;
                while (!closeClient && decoder.next(body))
                    handle(client, body, closeClient);
            }
            if (closeClient) {
                ::close(client);
                clients.erase(client);
            }
        }
    }
    for (const auto& client : clients)
        ::close(client.first);
}

void FakeRuntimeServer::handle(int client, const std::string& body, bool& closeClient)
{
    std::function<void(const std::string&)> observer;
    {
        std::lock_guard lock(m_mutex);
        m_requests.push_back(body);
        observer = m_observer;
    }
    m_requestArrived.notify_all();
    if (observer)
        observer(body);
    const std::string id = requestId(body);
    if (!expectsReply(id) && !hasQueuedReply(id))
        return;
    const Reply reply = takeReply(id);
    switch (reply.kind) {
        case Reply::Kind::none:
            return;
        case Reply::Kind::closeConnection:
            closeClient = true;
            return;
        case Reply::Kind::emptyFrame:
            writeAll(client, std::string(4, '\0'));
            return;
        case Reply::Kind::body:
            break;
    }
    const std::string frame = *wire::encodeReplyFrame(reply.body);
    if (reply.chunkSize == 0) {
        writeAll(client, frame);
        return;
    }
    for (std::size_t at = 0; at < frame.size(); at += reply.chunkSize)
        writeAll(client, std::string_view(frame).substr(at, reply.chunkSize));
}

} // namespace pomvar::test

#pragma once

#include <nlohmann/json.hpp>

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace pomvar::test {

// A scriptable stand-in for the runtime server over real TCP and the real framing, serving on a
// thread of its own so that the blocking front end can talk to it from the test's thread. It
// records the exact text of every request and answers the awaited ones with scripted replies.
// Replies queued for an id are used once, in order, before the id's default.
class FakeRuntimeServer
{
public:
    struct Reply
    {
        std::string body;             // "" goes out as a zero-length frame
        std::size_t chunkSize = 0;    // 0: the frame goes out in one write
        bool closeConnection = false; // instead of answering

        static Reply json(const nlohmann::json& value) { return text(value.dump()); }
        static Reply text(std::string body) { return { std::move(body), 0, false }; }
        static Reply close() { return { {}, 0, true }; }
        Reply split(std::size_t chunk) const { return { body, chunk, closeConnection }; }
    };

    // Port 0: a free port, listening at once. A fixed port listens when listen() is called.
    explicit FakeRuntimeServer(std::uint16_t port = 0);
    ~FakeRuntimeServer();

    // Starts listening on the loopback address and serving; false when the port is taken. Once
    // listening, a second call changes nothing.
    bool listen();
    std::uint16_t port() const { return m_port; }

    void setDefaultReply(const std::string& id, Reply reply)
    {
        QMutexLocker lock(&m_mutex);
        m_defaults[id] = std::move(reply);
    }
    // A queued reply is sent even for a request that expects none (a misbehaving server).
    void queueReply(const std::string& id, Reply reply)
    {
        QMutexLocker lock(&m_mutex);
        m_queued[id].push_back(std::move(reply));
    }

    std::vector<std::string> requests() const
    {
        QMutexLocker lock(&m_mutex);
        return m_requests;
    }
    void clearRequests()
    {
        QMutexLocker lock(&m_mutex);
        m_requests.clear();
    }
    // Waits until at least `count` requests arrived since the last clear.
    bool waitForRequests(std::size_t count, int timeoutMs = 5000) const;
    // Called on the serving thread after each request is recorded.
    void setRequestObserver(std::function<void(const std::string& body)> observer)
    {
        QMutexLocker lock(&m_mutex);
        m_observer = std::move(observer);
    }

    // The id of a request text, read the way the real server reads it.
    static std::string requestId(std::string_view body);

private:
    void answer(QTcpSocket& client, const std::string& body);
    std::optional<Reply> takeReply(const std::string& id);

    std::uint16_t m_port;
    QThread m_thread;
    QTcpServer* m_server = nullptr; // lives on m_thread

    mutable QMutex m_mutex;
    mutable QWaitCondition m_requestArrived;
    std::map<std::string, Reply> m_defaults;
    std::map<std::string, std::deque<Reply>> m_queued;
    std::vector<std::string> m_requests;
    std::function<void(const std::string&)> m_observer;
};

} // namespace pomvar::test

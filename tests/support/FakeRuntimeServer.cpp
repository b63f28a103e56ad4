#include "FakeRuntimeServer.h"

#include "FakeMenus.h"
#include "RequestParser.h"
#include "wire/Frame.h"
#include "wire/FrameDecoder.h"
#include "wire/Protocol.h"

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace pomvar::test {

namespace {

// Replies that let a front end run: ready, default preferences, no changes, no apps.
std::map<std::string, FakeRuntimeServer::Reply> standardReplies()
{
    using Reply = FakeRuntimeServer::Reply;
    const FakeMenus none;
    return {
        { "get-app-status", Reply::json({ { "ready", true }, { "updateFinished", false } }) },
        { "get-user-prefs", Reply::json(FakeMenus::prefs(0, true, false, true, true)) },
        { "get-menu-data-modified-status", Reply::json(FakeMenus::modified()) },
        { "get-allapps-menu-data", Reply::json(none.allApps()) },
        { "get-recentapps-menu-data", Reply::json(none.recentApps()) },
        { "get-myapps-menu-data", Reply::json(none.myApps()) },
        { "toggle-set-appcat", Reply::json({ { "isset", true } }) },
        { "check-update-available", Reply::json({ { "isUpdateAvailable", false } }) },
        { "get-app-update-status", Reply::json({ { "status", "noUpdate" } }) },
    };
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
    m_thread.start();
}

FakeRuntimeServer::~FakeRuntimeServer()
{
    if (m_server)
        QMetaObject::invokeMethod(
            m_server, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
    delete m_placeholder;
}

bool FakeRuntimeServer::listen()
{
    return start(false);
}

bool FakeRuntimeServer::listenHoldingConnections()
{
    if (!start(true))
        return false;
    // The one queued connection the backlog admits: every later SYN is dropped and retried.
    m_placeholder = new QTcpSocket;
    m_placeholder->connectToHost(QHostAddress::LocalHost, m_port);
    return m_placeholder->waitForConnected(5000);
}

void FakeRuntimeServer::release()
{
    QMetaObject::invokeMethod(m_server, [this] { m_server->resumeAccepting(); });
}

bool FakeRuntimeServer::start(bool holding)
{
    bool listening = false;
    QObject context;
    context.moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        &context,
        [&] {
            auto server = std::make_unique<QTcpServer>();
            server->setListenBacklogSize(holding ? 0 : 50);
            if (!server->listen(QHostAddress::LocalHost, m_port))
                return;
            if (holding)
                server->pauseAccepting();
            m_port = server->serverPort();
            m_server = server.release();
            serve(*m_server);
            listening = true;
        },
        Qt::BlockingQueuedConnection);
    return listening;
}

void FakeRuntimeServer::serve(QTcpServer& server)
{
    QObject::connect(&server, &QTcpServer::newConnection, &server, [this, &server] {
        while (QTcpSocket* client = server.nextPendingConnection()) {
            client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            auto decoder = std::make_shared<wire::RequestDecoder>();
            QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
            QObject::connect(client, &QTcpSocket::readyRead, client, [this, client, decoder] {
                decoder->feed(client->readAll().toStdString());
                std::string body;
                while (client->state() == QAbstractSocket::ConnectedState && decoder->next(body))
                    answer(*client, body);
            });
        }
    });
}

void FakeRuntimeServer::answer(QTcpSocket& client, const std::string& body)
{
    std::function<void(const std::string&)> observer;
    {
        QMutexLocker lock(&m_mutex);
        m_requests.push_back(body);
        observer = m_observer;
    }
    m_requestArrived.wakeAll();
    if (observer)
        observer(body);
    bool found = false;
    const Reply reply = takeReply(requestId(body), found);
    if (!found)
        return;
    switch (reply.kind) {
        case Reply::Kind::none:
            return;
        case Reply::Kind::closeConnection:
            client.disconnectFromHost();
            return;
        case Reply::Kind::emptyFrame:
            client.write(QByteArray(4, '\0'));
            return;
        case Reply::Kind::body:
            break;
    }
    const std::string frame = *wire::encodeReplyFrame(reply.body);
    const std::size_t chunk = reply.chunkSize ? reply.chunkSize : frame.size();
    for (std::size_t at = 0; at < frame.size(); at += chunk) {
        client.write(frame.data() + at, qint64(std::min(chunk, frame.size() - at)));
        client.flush();
    }
}

FakeRuntimeServer::Reply FakeRuntimeServer::takeReply(const std::string& id, bool& found)
{
    QMutexLocker lock(&m_mutex);
    found = true;
    if (auto queued = m_queued.find(id); queued != m_queued.end() && !queued->second.empty()) {
        Reply reply = std::move(queued->second.front());
        queued->second.pop_front();
        return reply;
    }
    const auto fallback = m_defaults.find(id);
    found = request::expectsReply(id) && fallback != m_defaults.end();
    return found ? fallback->second : Reply::noReply();
}

void FakeRuntimeServer::setDefaultReply(const std::string& id, Reply reply)
{
    QMutexLocker lock(&m_mutex);
    m_defaults[id] = std::move(reply);
}

void FakeRuntimeServer::queueReply(const std::string& id, Reply reply)
{
    QMutexLocker lock(&m_mutex);
    m_queued[id].push_back(std::move(reply));
}

std::vector<std::string> FakeRuntimeServer::requests() const
{
    QMutexLocker lock(&m_mutex);
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
    QMutexLocker lock(&m_mutex);
    m_requests.clear();
}

bool FakeRuntimeServer::waitForRequests(std::size_t count, int timeoutMs) const
{
    QDeadlineTimer deadline(timeoutMs);
    QMutexLocker lock(&m_mutex);
    while (m_requests.size() < count) {
        if (!m_requestArrived.wait(&m_mutex, deadline))
            return m_requests.size() >= count;
    }
    return true;
}

void FakeRuntimeServer::setRequestObserver(std::function<void(const std::string&)> observer)
{
    QMutexLocker lock(&m_mutex);
    m_observer = std::move(observer);
}

std::string FakeRuntimeServer::requestId(std::string_view body)
{
    const auto request = srv::RequestParser::parse(body);
    return request ? request->id : std::string();
}

} // namespace pomvar::test

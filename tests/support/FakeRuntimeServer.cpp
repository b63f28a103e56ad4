#include "FakeRuntimeServer.h"

#include "FakeMenus.h"
#include "pomvarsrv/ipc/RequestParser.h"
#include "wire/Frame.h"
#include "wire/FrameDecoder.h"
#include "wire/Protocol.h"

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace pomvar::test {

// The default replies let a front end run: ready, default preferences, no changes, no apps.
FakeRuntimeServer::FakeRuntimeServer(std::uint16_t port)
    : m_port(port)
{
    m_defaults = {
        { "get-app-status", Reply::json({ { "ready", true }, { "updateFinished", false } }) },
        { "get-user-prefs", Reply::json(FakeMenus::prefs(0, true, false, true, true)) },
        { "get-menu-data-modified-status", Reply::json(FakeMenus::modified()) },
        { "toggle-set-appcat", Reply::json({ { "isset", true } }) },
        { "check-update-available", Reply::json({ { "isUpdateAvailable", false } }) },
        { "get-app-update-status", Reply::json({ { "status", "noUpdate" } }) },
    };
    FakeMenus().install(*this);
    m_thread.start();
    if (port == 0)
        listen();
}

FakeRuntimeServer::~FakeRuntimeServer()
{
    if (m_server)
        QMetaObject::invokeMethod(
            m_server, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

bool FakeRuntimeServer::listen()
{
    QObject context;
    context.moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        &context,
        [this] {
            auto server = std::make_unique<QTcpServer>();
            if (!server->listen(QHostAddress::LocalHost, m_port))
                return;
            m_port = server->serverPort();
            m_server = server.release();
            QObject::connect(m_server, &QTcpServer::newConnection, m_server, [this] {
                while (QTcpSocket* client = m_server->nextPendingConnection()) {
                    client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
                    auto decoder = std::make_shared<wire::RequestDecoder>();
                    QObject::connect(
                        client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
                    QObject::connect(client, &QTcpSocket::readyRead, client, [=, this] {
                        decoder->feed(client->readAll().toStdString());
                        std::string body;
                        while (client->state() == QAbstractSocket::ConnectedState &&
                               decoder->next(body))
                            answer(*client, body);
                    });
                }
            });
        },
        Qt::BlockingQueuedConnection);
    return m_server != nullptr;
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
    const std::optional<Reply> reply = takeReply(requestId(body));
    if (reply && reply->closeConnection)
        client.disconnectFromHost();
    if (!reply || reply->closeConnection)
        return;
    const std::string frame = *wire::encodeReplyFrame(reply->body);
    const std::size_t chunk = reply->chunkSize ? reply->chunkSize : frame.size();
    for (std::size_t at = 0; at < frame.size(); at += chunk) {
        client.write(frame.data() + at, qint64(std::min(chunk, frame.size() - at)));
        client.flush();
    }
}

std::optional<FakeRuntimeServer::Reply> FakeRuntimeServer::takeReply(const std::string& id)
{
    QMutexLocker lock(&m_mutex);
    if (auto queued = m_queued.find(id); queued != m_queued.end() && !queued->second.empty()) {
        Reply reply = std::move(queued->second.front());
        queued->second.pop_front();
        return reply;
    }
    const auto fallback = m_defaults.find(id);
    if (!request::expectsReply(id) || fallback == m_defaults.end())
        return std::nullopt;
    return fallback->second;
}

bool FakeRuntimeServer::waitForRequests(std::size_t count, int timeoutMs) const
{
    QDeadlineTimer deadline(timeoutMs);
    QMutexLocker lock(&m_mutex);
    while (m_requests.size() < count && m_requestArrived.wait(&m_mutex, deadline)) {
    }
    return m_requests.size() >= count;
}

std::string FakeRuntimeServer::requestId(std::string_view body)
{
    const auto request = srv::RequestParser::parse(body);
    return request ? request->id : std::string();
}

} // namespace pomvar::test

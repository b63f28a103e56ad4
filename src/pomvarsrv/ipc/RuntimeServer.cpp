#include "pomvarsrv/ipc/RuntimeServer.h"

#include "pomvarsrv/ipc/ClientConnection.h"
#include "pomvarsrv/ipc/IpcLog.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace pomvar::srv {

namespace {

// After a failed accept (EMFILE: descriptors used up) QTcpServer stops accepting: it is told
// to try again this much later, not at once, which would spin while the shortage lasts.
constexpr int kAcceptRetryMs = 100;

} // namespace

RuntimeServer::RuntimeServer(RequestHandler& handler, pid_t frontEnd, QObject* parent)
    : QObject(parent)
    , m_handler(handler)
    , m_peerCheck(frontEnd)
{}

RuntimeServer::~RuntimeServer() = default;

void RuntimeServer::serve(const std::vector<int>& descriptors)
{
    for (const int descriptor : descriptors) {
        auto* server = new QTcpServer(this);
        if (!server->setSocketDescriptor(descriptor)) {
            qCWarning(lcIpc) << "cannot serve a listening socket:" << server->errorString();
            delete server;
            continue;
        }
        connect(server, &QTcpServer::newConnection, this, [this, server] { acceptFrom(server); });
        connect(
            server, &QTcpServer::acceptError, this, [this, server] { resumeAfterError(server); });
        m_servers.push_back(server);
    }
}

void RuntimeServer::close()
{
    qDeleteAll(m_servers);
    m_servers.clear();
    m_openings.clear();
    // The connections, with their sockets.
    const QObjectList connections = children();
    qDeleteAll(connections);
}

void RuntimeServer::resumeAfterError(QTcpServer* server)
{
    if (!m_acceptFailing)
        qCWarning(lcIpc) << "cannot accept connections:" << server->errorString()
                         << "- trying again every" << kAcceptRetryMs << "ms";
    m_acceptFailing = true;
    QTimer::singleShot(kAcceptRetryMs, server, &QTcpServer::resumeAccepting);
}

void RuntimeServer::acceptFrom(QTcpServer* server)
{
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        m_acceptFailing = false;
        auto* connection = new ClientConnection(socket, m_handler, this);
        const QPointer<ClientConnection> guarded(connection);
        const auto leave = [this, guarded] { std::erase(m_openings, guarded); };
        connect(connection, &ClientConnection::established, this, leave);
        connect(connection, &ClientConnection::finished, this, leave);
        connect(connection, &ClientConnection::finished, connection, &QObject::deleteLater);
        m_openings.push_back(guarded);
        m_peerCheck.check(*socket, connection, [guarded](const QString& refusal) {
            if (refusal.isEmpty())
                guarded->start();
            else
                guarded->refuse(QStringLiteral("refused a peer ") + refusal);
        });
        if (m_openings.size() > kMaxOpenings) {
            const QPointer<ClientConnection> oldest = m_openings.front();
            m_openings.pop_front();
            if (oldest)
                oldest->refuse(QStringLiteral("%1 newer connections wait for their first request")
                                   .arg(kMaxOpenings));
        }
    }
}

} // namespace pomvar::srv

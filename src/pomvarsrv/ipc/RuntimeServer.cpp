#include "pomvarsrv/ipc/RuntimeServer.h"

#include "pomvarsrv/ipc/ClientConnection.h"
#include "pomvarsrv/ipc/IpcLog.h"
#include "pomvarsrv/ipc/SocketDiag.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <unistd.h>

namespace pomvar::srv {

RuntimeServer::RuntimeServer(RequestHandler& handler, QObject* parent)
    : QObject(parent)
    , m_handler(handler)
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
        m_servers.push_back(server);
    }
}

void RuntimeServer::close()
{
    qDeleteAll(m_servers);
    m_servers.clear();
    // The connections, with their sockets.
    const QObjectList connections = children();
    qDeleteAll(connections);
}

void RuntimeServer::acceptFrom(QTcpServer* server)
{
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        // The peer's socket: its local end is our remote one.
        const auto peer = SocketDiag::connection(
            socket->peerAddress(), socket->peerPort(), socket->localAddress(), socket->localPort());
        if (!peer || peer->uid != ::getuid()) {
            qCWarning(lcIpc).noquote()
                << "refused a connection from"
                << socket->peerAddress().toString() + u':' + QString::number(socket->peerPort())
                << (peer ? QStringLiteral("owned by uid %1").arg(peer->uid)
                         : QStringLiteral("of unknown owner"));
            socket->abort();
            socket->deleteLater();
            continue;
        }
        auto* connection = new ClientConnection(socket, m_handler, this);
        connect(connection, &ClientConnection::finished, connection, &QObject::deleteLater);
    }
}

} // namespace pomvar::srv

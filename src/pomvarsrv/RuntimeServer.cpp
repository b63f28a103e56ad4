#include "RuntimeServer.h"

#include "ClientConnection.h"
#include "PeerCredentials.h"
#include "ServerLog.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <unistd.h>

namespace pomvar::srv {

RuntimeServer::RuntimeServer(RequestHandler& handler, QObject* parent)
    : QObject(parent)
    , m_handler(handler)
{}

RuntimeServer::~RuntimeServer() = default;

RuntimeServer::ListenResult RuntimeServer::listen(quint16 port)
{
    m_port = port;
    bool any = false;
    for (const auto& address :
         { QHostAddress(QHostAddress::LocalHost), QHostAddress(QHostAddress::LocalHostIPv6) }) {
        auto* server = new QTcpServer(this);
        if (!server->listen(address, port)) {
            const bool taken = server->serverError() == QAbstractSocket::AddressInUseError;
            const QString error = server->errorString();
            delete server;
            if (taken)
                return ListenResult::portTaken;
            qCInfo(lcServer).noquote() << "not listening on" << address.toString() << error;
            continue;
        }
        connect(server, &QTcpServer::newConnection, this, [this, server] { acceptFrom(server); });
        m_servers.push_back(server);
        any = true;
    }
    return any ? ListenResult::listening : ListenResult::failed;
}

void RuntimeServer::acceptFrom(QTcpServer* server)
{
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        const auto owner = PeerCredentials::ownerUid(
            socket->peerAddress(), socket->peerPort(), socket->localAddress(), socket->localPort());
        if (!owner || *owner != ::getuid()) {
            qCWarning(lcServer).noquote()
                << "refused a connection from"
                << socket->peerAddress().toString() + u':' + QString::number(socket->peerPort())
                << (owner ? QStringLiteral("owned by uid %1").arg(*owner)
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

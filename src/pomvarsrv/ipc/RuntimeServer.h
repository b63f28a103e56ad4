#pragma once

#include "pomvarsrv/ipc/PeerCheck.h"

#include <QObject>
#include <QPointer>

#include <deque>
#include <memory>
#include <vector>

class QTcpServer;

namespace pomvar::srv {

class ClientConnection;
class RequestHandler;

// Serves the connections to the loopback sockets that the peer check allows (PeerCheck): those
// of this user's processes in the server's namespaces. At most kMaxOpenings connections wait for
// their first request, the oldest dropped for a new one, so held openings cannot use up the
// server's descriptors. Accepting resumes after a failed accept (descriptors used up).
class RuntimeServer : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t kMaxOpenings = 32;

    // `frontEnd`: the process that started the server, checked before any other; 0: none.
    explicit RuntimeServer(RequestHandler& handler, pid_t frontEnd = 0, QObject* parent = nullptr);
    ~RuntimeServer() override;

    // Takes over listening sockets (LoopbackSockets).
    void serve(const std::vector<int>& descriptors);
    // Closes the listening sockets and every connection: the port is free for another server.
    void close();

private:
    void acceptFrom(QTcpServer* server);
    void resumeAfterError(QTcpServer* server);

    RequestHandler& m_handler;
    PeerCheck m_peerCheck;
    std::vector<QTcpServer*> m_servers;
    std::deque<QPointer<ClientConnection>> m_openings; // the oldest first
    bool m_acceptFailing = false;                      // said once until an accept succeeds
};

} // namespace pomvar::srv

#pragma once

#include <QObject>

#include <memory>
#include <vector>

class QTcpServer;

namespace pomvar::srv {

class RequestHandler;

// Serves every connection to the loopback sockets from a process of the same user; any other
// is closed at once.
class RuntimeServer : public QObject
{
    Q_OBJECT

public:
    explicit RuntimeServer(RequestHandler& handler, QObject* parent = nullptr);
    ~RuntimeServer() override;

    // Takes over listening sockets (LoopbackSockets).
    void serve(const std::vector<int>& descriptors);
    // Closes the listening sockets and every connection: the port is free for another server.
    void close();

private:
    void acceptFrom(QTcpServer* server);

    RequestHandler& m_handler;
    std::vector<QTcpServer*> m_servers;
};

} // namespace pomvar::srv

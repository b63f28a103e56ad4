#pragma once

#include <QObject>

#include <memory>
#include <vector>

class QTcpServer;

namespace pomvar::srv {

class RequestHandler;

// Listens on the loopback addresses that "localhost" names (127.0.0.1 and ::1) and serves
// every connection from a process of the same user; any other is closed at once.
class RuntimeServer : public QObject
{
    Q_OBJECT

public:
    enum class ListenResult
    {
        listening,
        portTaken,
        failed,
    };

    explicit RuntimeServer(RequestHandler& handler, QObject* parent = nullptr);
    ~RuntimeServer() override;

    ListenResult listen(quint16 port);
    quint16 port() const { return m_port; }

private:
    void acceptFrom(QTcpServer* server);

    RequestHandler& m_handler;
    std::vector<QTcpServer*> m_servers;
    quint16 m_port = 0;
};

} // namespace pomvar::srv

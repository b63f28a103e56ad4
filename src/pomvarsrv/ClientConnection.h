#pragma once

#include "wire/FrameDecoder.h"

#include <QObject>

class QTcpSocket;

namespace pomvar::srv {

class RequestHandler;

// One client: reads its requests in order and writes the replies in the same order. When the
// client stops reading its replies, the connection stops taking requests from it until the
// replies drain, so a misbehaving client can only slow itself down.
class ClientConnection : public QObject
{
    Q_OBJECT

public:
    ClientConnection(QTcpSocket* socket, RequestHandler& handler, QObject* parent = nullptr);

Q_SIGNALS:
    void finished();

private:
    void serve();
    void serveFrame(const std::string& body);

    QTcpSocket* m_socket;
    RequestHandler& m_handler;
    wire::RequestDecoder m_decoder;
    bool m_serving = false;
};

} // namespace pomvar::srv

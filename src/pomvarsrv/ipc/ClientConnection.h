#pragma once

#include "wire/FrameDecoder.h"

#include <QObject>

class QTcpSocket;

namespace pomvar::srv {

class RequestHandler;

// One client: reads its requests in order and writes the replies in the same order. A connection
// that opens like HTTP, or sends a frame that is not a well-formed request, is closed at once and
// nothing after it is read: a web page can reach the port, but never drive the server. When the
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
    // Logs why, closes the connection and reads nothing more from it.
    void refuse(const QString& why);

    QTcpSocket* m_socket;
    RequestHandler& m_handler;
    wire::RequestDecoder m_decoder;
    bool m_serving = false;
    bool m_openingChecked = false;
    bool m_refused = false;
};

} // namespace pomvar::srv

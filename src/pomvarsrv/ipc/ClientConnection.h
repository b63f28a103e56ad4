#pragma once

#include "wire/FrameDecoder.h"

#include <QObject>
#include <QTimer>

class QTcpSocket;

namespace pomvar::srv {

class RequestHandler;

// One client: reads its requests in order and writes the replies in the same order, once the
// peer check has allowed it (start()). Until its first request is in, it is only an opening:
// one that opens like HTTP, whose first body does not begin with "{", or that has no complete
// request within kFirstRequestMs is closed, as is any connection that sends a frame that is
// not a well-formed request; nothing after it is read. A web page can reach the port (and a
// TLS ClientHello is what its fetch of an https address sends), but never drive the server.
// An established connection is never timed out: the front end keeps its one for its life. When
// the client stops reading its replies, the connection stops taking requests from it until
// the replies drain, so a misbehaving client can only slow itself down.
class ClientConnection : public QObject
{
    Q_OBJECT

public:
    static constexpr int kFirstRequestMs = 2000;

    ClientConnection(QTcpSocket* socket, RequestHandler& handler, QObject* parent = nullptr);

    QTcpSocket& socket() const { return *m_socket; }
    // The peer check allowed it: its requests are read from now on.
    void start();
    // Logs why, closes the connection and reads nothing more from it.
    void refuse(const QString& why);

Q_SIGNALS:
    // Its first request was well-formed.
    void established();
    void finished();

private:
    void serve();
    void serveFrame(const std::string& body);
    // Why the first bytes are no request of ours; empty when they may be.
    QString badOpening() const;
    // Whether the first frame has come in whole, unread until the peer check allows it.
    bool firstRequestIsIn() const;

    QTcpSocket* m_socket;
    RequestHandler& m_handler;
    wire::RequestDecoder m_decoder;
    QTimer m_firstRequest;
    bool m_started = false;
    bool m_serving = false;
    bool m_openingChecked = false;
    bool m_established = false;
    bool m_refused = false;
};

} // namespace pomvar::srv

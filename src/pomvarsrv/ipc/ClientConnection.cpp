#include "pomvarsrv/ipc/ClientConnection.h"

#include "pomvarsrv/ipc/IpcLog.h"
#include "pomvarsrv/ipc/RequestHandler.h"
#include "pomvarsrv/ipc/RequestParser.h"
#include "wire/Frame.h"

#include <QTcpSocket>

#include <algorithm>

namespace pomvar::srv {

namespace {

// Replies waiting to be written beyond which no further request is read.
constexpr qint64 kMaxPendingReplyBytes = 32 * 1024 * 1024;
// What the socket may hold of unread requests: past it, TCP itself holds the client back.
constexpr qint64 kReadBufferSize = 256 * 1024;
constexpr qint64 kChunk = 64 * 1024;

// Every method word is three capital letters or more ("GET", "POST", "PRI * HTTP/2.0"); a
// request frame starts with its length, then "{".
constexpr qint64 kOpeningSize = wire::kRequestPrefixSize + 1;

} // namespace

ClientConnection::ClientConnection(QTcpSocket* socket, RequestHandler& handler, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_handler(handler)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(kReadBufferSize);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &ClientConnection::serve);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &ClientConnection::serve);
    connect(m_socket, &QTcpSocket::disconnected, this, &ClientConnection::finished);
    connect(m_socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error != QAbstractSocket::RemoteHostClosedError)
            qCInfo(lcIpc) << "client connection error:" << m_socket->errorString();
        Q_EMIT finished();
    });
    // From the accept on, the peer check's time included; but a client whose whole first
    // request is in waits for the check however long it takes on a busy machine.
    m_firstRequest.setSingleShot(true);
    connect(&m_firstRequest, &QTimer::timeout, this, [this] {
        serve(); // a request that came in while the event loop was busy counts
        if (!m_established && !m_refused && (m_started || !firstRequestIsIn()))
            refuse(QStringLiteral("no request within %1 ms").arg(kFirstRequestMs));
    });
    m_firstRequest.start(kFirstRequestMs);
}

void ClientConnection::start()
{
    m_started = true;
    serve();
}

void ClientConnection::refuse(const QString& why)
{
    if (m_refused)
        return;
    qCWarning(lcIpc).noquote() << "closed the connection from port" << m_socket->peerPort()
                               << "unread:" << why;
    m_refused = true;
    m_firstRequest.stop();
    m_socket->abort();
    Q_EMIT finished();
}

QString ClientConnection::badOpening() const
{
    const QByteArray opening = m_socket->peek(kOpeningSize);
    if (std::all_of(opening.begin(), opening.end(), [](char c) { return c >= 'A' && c <= 'Z'; }))
        return QStringLiteral("it opens like HTTP");
    if (opening.back() != '{' || (opening[0] == 0 && opening[1] == 0))
        return QStringLiteral("its first request does not begin with {");
    return {};
}

bool ClientConnection::firstRequestIsIn() const
{
    const QByteArray prefix = m_socket->peek(qint64(wire::kRequestPrefixSize));
    if (prefix.size() < qint64(wire::kRequestPrefixSize))
        return false;
    const auto length = wire::decodeLength(std::string_view(prefix.constData(), prefix.size()),
                                           wire::kRequestPrefixSize);
    return m_socket->bytesAvailable() >= qint64(wire::kRequestPrefixSize + length);
}

void ClientConnection::serve()
{
    // A signal emitted by a write inside serveFrame() must not start a second pass.
    if (!m_started || m_serving || m_refused)
        return;
    m_serving = true;
    if (!m_openingChecked && m_socket->bytesAvailable() >= kOpeningSize) {
        m_openingChecked = true;
        if (const QString why = badOpening(); !why.isEmpty())
            refuse(why);
    }
    std::string body;
    while (m_openingChecked && !m_refused && m_socket->bytesToWrite() < kMaxPendingReplyBytes) {
        if (m_decoder.next(body)) {
            serveFrame(body);
            continue;
        }
        if (m_socket->bytesAvailable() == 0)
            break;
        const QByteArray bytes = m_socket->read(kChunk);
        m_decoder.feed(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    }
    m_serving = false;
}

void ClientConnection::serveFrame(const std::string& body)
{
    const auto request = RequestParser::parse(body);
    if (!request) {
        refuse(QStringLiteral("a frame of %1 bytes is not a well-formed request").arg(body.size()));
        return;
    }
    if (!m_established) {
        m_established = true;
        m_firstRequest.stop();
        Q_EMIT established();
    }
    const auto reply = m_handler.handle(*request);
    if (!reply)
        return;
    const auto frame = wire::encodeReplyFrame(*reply);
    if (!frame) {
        qCWarning(lcIpc) << "reply too long to send:" << reply->size() << "bytes";
        return;
    }
    m_socket->write(frame->data(), static_cast<qint64>(frame->size()));
}

} // namespace pomvar::srv

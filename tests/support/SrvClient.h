#pragma once

#include <nlohmann/json.hpp>

#include <QTcpSocket>

#include <optional>
#include <string>

// Compares JSON values, showing the actual one on failure; `actual` is evaluated once, as it
// may be a request.
#define JCOMPARE(actual, expected)                                                                 \
    do {                                                                                           \
        const nlohmann::json jcompareActual = (actual);                                            \
        QVERIFY2(jcompareActual == (expected), jcompareActual.dump().c_str());                     \
    } while (false)

namespace pomvar::test {

// A blocking client of the runtime protocol (2-byte-prefixed requests, 4-byte-prefixed replies)
// that needs no event loop. Every wait is bounded, so a broken server fails a test, never hangs it.
class SrvClient
{
public:
    bool connectTo(quint16 port, const QString& address = QStringLiteral("127.0.0.1"));
    void close() { m_socket.abort(); }
    // False once either side closed the connection.
    bool isConnected() { return m_socket.state() == QAbstractSocket::ConnectedState; }
    quint16 localPort() const { return m_socket.localPort(); }
    // Frames and sends one request body.
    bool send(std::string_view body);
    bool sendRaw(std::string_view bytes);
    // The next reply body; nothing when the connection closed or nothing came in time.
    std::optional<std::string> readReply();
    std::optional<std::string> request(std::string_view body)
    {
        return send(body) ? readReply() : std::nullopt;
    }
    // The reply parsed; null when there was none or it is not JSON.
    nlohmann::json json(std::string_view body);

private:
    bool readExactly(char* into, qint64 size);

    QTcpSocket m_socket;
};

} // namespace pomvar::test

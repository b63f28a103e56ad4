#include "SrvClient.h"

#include "wire/Frame.h"

#include <QHostAddress>

namespace pomvar::test {

bool SrvClient::connectTo(quint16 port, const QString& address)
{
    m_socket.abort();
    m_socket.connectToHost(QHostAddress(address), port);
    if (!m_socket.waitForConnected(20000))
        return false;
    // Without it, a frame written a byte at a time would wait for delayed acknowledgements.
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    return true;
}

bool SrvClient::sendRaw(std::string_view bytes)
{
    if (m_socket.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size()))
        return false;
    while (m_socket.bytesToWrite() > 0)
        if (!m_socket.waitForBytesWritten(20000))
            return false;
    return true;
}

bool SrvClient::send(std::string_view body)
{
    const auto frame = wire::encodeRequestFrame(body);
    return frame && sendRaw(*frame);
}

bool SrvClient::readExactly(char* into, qint64 size)
{
    while (m_socket.bytesAvailable() < size)
        if (!m_socket.waitForReadyRead(20000))
            return false;
    return m_socket.read(into, size) == size;
}

std::optional<std::string> SrvClient::readReply()
{
    char prefix[wire::kReplyPrefixSize];
    if (!readExactly(prefix, sizeof prefix))
        return std::nullopt;
    std::string body(wire::decodeLength(std::string_view(prefix, sizeof prefix), sizeof prefix), 0);
    return readExactly(body.data(), qint64(body.size())) ? std::optional(body) : std::nullopt;
}

nlohmann::json SrvClient::json(std::string_view body)
{
    const auto reply = request(body);
    const auto value = reply ? nlohmann::json::parse(*reply, nullptr, false) : nlohmann::json();
    return value.is_discarded() ? nlohmann::json() : value;
}

} // namespace pomvar::test

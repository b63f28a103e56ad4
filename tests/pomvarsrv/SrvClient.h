#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pomvar::srvtest {

// A blocking TCP client speaking the runtime protocol: 2-byte-prefixed requests out,
// 4-byte-prefixed replies in. Waits are bounded so that a broken server fails a test instead of
// hanging it.
class SrvClient
{
public:
    SrvClient() = default;
    ~SrvClient();
    SrvClient(const SrvClient&) = delete;
    SrvClient& operator=(const SrvClient&) = delete;

    bool connectTo(std::uint16_t port, const char* address = "127.0.0.1");
    void close();
    bool isOpen() const { return m_fd >= 0; }

    // Frames and sends one request body.
    bool send(std::string_view body);
    bool sendRaw(std::string_view bytes);
    // The next reply body; nothing when the connection closed or nothing came in time.
    std::optional<std::string> readReply(int timeoutMs = 20000);
    // send() then readReply().
    std::optional<std::string> request(std::string_view body);
    // True when the server closed the connection (end of stream or reset) without sending
    // anything first.
    bool closedWithoutData(int timeoutMs = 20000);

    // The request texts exactly as the front end writes them.
    static std::string plain(std::string_view id);
    static std::string withAppkey(std::string_view id, std::string_view appkey);
    static std::string withAppcat(std::string_view id, std::string_view appcat);
    static std::string toggleSetAppcat(std::string_view appkey, std::string_view appcat);
    static std::string organizer(int pane, std::string_view itemkey);

private:
    bool readExactly(char* into, std::size_t size, int timeoutMs);

    int m_fd = -1;
};

} // namespace pomvar::srvtest

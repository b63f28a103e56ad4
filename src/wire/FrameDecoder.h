#pragma once

#include "wire/Frame.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pomvar::wire {

// Cuts a byte stream into frame bodies. Bytes may arrive in chunks of any size; a frame is
// handed out once its prefix and whole body are in. PrefixSize is 2 for requests, 4 for replies.
template <std::size_t PrefixSize>
class FrameDecoder
{
public:
    explicit FrameDecoder(std::size_t maxBodySize = SIZE_MAX)
        : m_maxBodySize(maxBodySize)
    {}

    void feed(std::string_view bytes) { m_buffer.append(bytes); }

    // Moves the next complete body into `body`; false when more bytes are needed.
    bool next(std::string& body)
    {
        if (available() < PrefixSize)
            return false;
        const std::size_t length = decodeLength(pending(), PrefixSize);
        if (length > m_maxBodySize) {
            m_oversized = true;
            return false;
        }
        if (available() < PrefixSize + length)
            return false;
        body.assign(pending().substr(PrefixSize, length));
        m_start += PrefixSize + length;
        compact();
        return true;
    }

    // A prefix announced more than maxBodySize: the stream cannot be trusted any longer.
    bool oversized() const { return m_oversized; }
    // Bytes of an incomplete frame held back.
    std::size_t buffered() const { return available(); }

private:
    std::size_t available() const { return m_buffer.size() - m_start; }
    std::string_view pending() const { return std::string_view(m_buffer).substr(m_start); }
    void compact()
    {
        // Drop consumed bytes once they make up most of the buffer, keeping appends amortised O(1).
        if (m_start > 4096 && m_start * 2 > m_buffer.size()) {
            m_buffer.erase(0, m_start);
            m_start = 0;
        }
    }

    std::string m_buffer;
    std::size_t m_start = 0;
    std::size_t m_maxBodySize;
    bool m_oversized = false;
};

using RequestDecoder = FrameDecoder<kRequestPrefixSize>;
using ReplyDecoder = FrameDecoder<kReplyPrefixSize>;

} // namespace pomvar::wire

#include "wire/Frame.h"

namespace pomvar::wire {

namespace {

std::string bigEndian(std::uint64_t value, std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[size - 1 - i] = static_cast<char>((value >> (8 * i)) & 0xFF);
    return bytes;
}

std::optional<std::string> prefixFor(std::size_t bodySize, std::size_t prefixSize)
{
    if (bodySize >> (8 * prefixSize) != 0)
        return std::nullopt;
    return bigEndian(bodySize, prefixSize);
}

std::optional<std::string> encode(std::string_view body, std::size_t prefixSize)
{
    auto frame = prefixFor(body.size(), prefixSize);
    if (frame)
        frame->append(body);
    return frame;
}

} // namespace

std::optional<std::string> requestPrefix(std::size_t bodySize)
{
    return prefixFor(bodySize, kRequestPrefixSize);
}

std::optional<std::string> replyPrefix(std::size_t bodySize)
{
    return prefixFor(bodySize, kReplyPrefixSize);
}

std::optional<std::string> encodeRequestFrame(std::string_view body)
{
    return encode(body, kRequestPrefixSize);
}

std::optional<std::string> encodeReplyFrame(std::string_view body)
{
    return encode(body, kReplyPrefixSize);
}

std::uint32_t decodeLength(std::string_view bytes, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && i < bytes.size(); ++i)
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

} // namespace pomvar::wire

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pomvar::wire {

// Requests (front end to server) carry a 2-byte big-endian length, replies a 4-byte one.
// The asymmetry is part of the protocol.
inline constexpr std::size_t kRequestPrefixSize = 2;
inline constexpr std::size_t kReplyPrefixSize = 4;
inline constexpr std::size_t kMaxRequestBodySize = 0xFFFF;

// The 2-byte prefix of a request body, or nothing when the body is too long for it.
std::optional<std::string> requestPrefix(std::size_t bodySize);

// The 4-byte prefix of a reply body, or nothing when the body is too long for it.
std::optional<std::string> replyPrefix(std::size_t bodySize);

// Prefix and body in one buffer, or nothing when the body does not fit the prefix.
std::optional<std::string> encodeRequestFrame(std::string_view body);
std::optional<std::string> encodeReplyFrame(std::string_view body);

// Reads a big-endian unsigned length from the first `size` bytes of `bytes`.
std::uint32_t decodeLength(std::string_view bytes, std::size_t size);

} // namespace pomvar::wire

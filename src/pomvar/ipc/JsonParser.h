#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace pomvar {

// Parses JSON text (RFC 8259, no comments) into an nlohmann::json value, giving the same value
// nlohmann's own parser gives. It exists for speed: menu replies run to megabytes, and scanning
// strings in runs instead of character by character parses them several times faster.
// Nesting deeper than kMaxDepth is refused rather than risking the stack.
class JsonParser
{
public:
    static constexpr int kMaxDepth = 1000;

    // Nothing when the text is not JSON (or not UTF-8); `error` then says where and why.
    static std::optional<nlohmann::json> parse(std::string_view text, std::string* error = nullptr);
};

} // namespace pomvar

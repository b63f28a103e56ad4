#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pomvar::srv {

// One request as the server understands it. Fields the request does not carry stay empty.
struct Request
{
    std::string id;
    std::optional<std::string> appkey = std::nullopt;
    std::optional<std::string> appcat = std::nullopt;
    std::optional<std::int64_t> pane = std::nullopt;
    // "organizer" only: the item key, or nothing for null.
    std::optional<std::string> itemkey = std::nullopt;
    // The drops: the key the item goes before; empty for last.
    std::optional<std::string> beforekey = std::nullopt;
    // The search's requests: a place, a key the panel caught, an activation token.
    std::optional<std::int64_t> x = std::nullopt;
    std::optional<std::int64_t> y = std::nullopt;
    std::optional<std::int64_t> key = std::nullopt;
    std::optional<std::int64_t> modifiers = std::nullopt;
    std::optional<std::string> text = std::nullopt;
    std::optional<std::string> token = std::nullopt;

    bool operator==(const Request&) const = default;
};

} // namespace pomvar::srv

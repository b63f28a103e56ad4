#include "RequestParser.h"

#include "wire/Protocol.h"

#include <nlohmann/json.hpp>

#include <charconv>

namespace pomvar::srv {

namespace {

constexpr std::string_view kHead = "{\n    \"id\": \"";
constexpr std::string_view kEnd = "\n}";
constexpr std::string_view kAppkeyField = ",\n    \"appkey\": \"";
constexpr std::string_view kAppcatField = ",\n    \"appcat\": \"";
constexpr std::string_view kStringEnd = "\"\n}";
constexpr std::string_view kToggleSeparator = "\",\n    \"appcat\": \"";
constexpr std::string_view kToggleEnd = "\"\n }   ";
constexpr std::string_view kPaneField = ",\n    \"pane\": ";
constexpr std::string_view kItemkeyField = ",\n    \"itemkey\": ";
constexpr std::string_view kNullEnd = "null\n}";

bool takePrefix(std::string_view& text, std::string_view prefix)
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool takeSuffix(std::string_view& text, std::string_view suffix)
{
    if (!text.ends_with(suffix))
        return false;
    text.remove_suffix(suffix.size());
    return true;
}

bool isAppkeyRequest(std::string_view id)
{
    return id == "launch" || id == "get-info-app" || id == "toggle-pin-app" ||
           id == "create-new-appcat-cxtmnu";
}

// ",\n    \"appkey\": \"" value "\"\n}" and the like: everything between the fixed pieces.
std::optional<std::string> pastedValue(std::string_view rest, std::string_view field)
{
    if (rest.size() < field.size() + kStringEnd.size() || !takePrefix(rest, field) ||
        !takeSuffix(rest, kStringEnd))
        return std::nullopt;
    return std::string(rest);
}

std::optional<Request> organizerLayout(std::string_view rest)
{
    if (!takePrefix(rest, kPaneField))
        return std::nullopt;
    std::int64_t pane = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), pane);
    if (error != std::errc() || end == rest.data())
        return std::nullopt;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (!takePrefix(rest, kItemkeyField))
        return std::nullopt;
    Request request{ .id = "organizer", .pane = pane };
    if (rest == kNullEnd)
        return request;
    if (rest.size() < 1 + kStringEnd.size() || !takePrefix(rest, "\"") ||
        !takeSuffix(rest, kStringEnd))
        return std::nullopt;
    request.itemkey = std::string(rest);
    return request;
}

std::optional<Request> toggleSetLayout(std::string_view rest)
{
    if (rest.size() < kAppkeyField.size() + kToggleSeparator.size() + kToggleEnd.size() ||
        !takePrefix(rest, kAppkeyField) || !takeSuffix(rest, kToggleEnd))
        return std::nullopt;
    // App keys are desktop file ids, which hold no line feed: the first separator is the one.
    const auto split = rest.find(kToggleSeparator);
    if (split == std::string_view::npos)
        return std::nullopt;
    return Request{ .id = "toggle-set-appcat",
                    .appkey = std::string(rest.substr(0, split)),
                    .appcat = std::string(rest.substr(split + kToggleSeparator.size())) };
}

std::optional<std::string> stringMember(const nlohmann::json& object, const char* key)
{
    const auto it = object.find(key);
    if (it == object.end() || !it->is_string())
        return std::nullopt;
    return it->get<std::string>();
}

} // namespace

std::optional<Request> RequestParser::parse(std::string_view body)
{
    if (auto request = parseLayout(body))
        return request;
    if (auto request = parseJson(body))
        return request;
    return recoverId(body);
}

std::optional<Request> RequestParser::parseLayout(std::string_view body)
{
    std::string_view rest = body;
    if (!takePrefix(rest, kHead))
        return std::nullopt;
    const auto quote = rest.find('"');
    if (quote == std::string_view::npos)
        return std::nullopt;
    const std::string_view id = rest.substr(0, quote);
    if (!request::isKnown(id))
        return std::nullopt;
    rest.remove_prefix(quote + 1);

    if (rest == kEnd)
        return Request{ .id = std::string(id) };
    if (isAppkeyRequest(id)) {
        if (auto value = pastedValue(rest, kAppkeyField))
            return Request{ .id = std::string(id), .appkey = std::move(value) };
        return std::nullopt;
    }
    if (id == "get-info-appcat") {
        if (auto value = pastedValue(rest, kAppcatField))
            return Request{ .id = std::string(id), .appcat = std::move(value) };
        return std::nullopt;
    }
    if (id == "toggle-set-appcat")
        return toggleSetLayout(rest);
    if (id == "organizer")
        return organizerLayout(rest);
    return std::nullopt;
}

std::optional<Request> RequestParser::parseJson(std::string_view body)
{
    const auto value = nlohmann::json::parse(body, nullptr, false);
    if (!value.is_object())
        return std::nullopt;
    auto id = stringMember(value, "id");
    if (!id)
        return std::nullopt;
    Request request{ .id = std::move(*id) };
    request.appkey = stringMember(value, "appkey");
    request.appcat = stringMember(value, "appcat");
    request.itemkey = stringMember(value, "itemkey");
    const auto pane = value.find("pane");
    if (pane != value.end() && pane->is_number_integer())
        request.pane = pane->get<std::int64_t>();
    return request;
}

std::optional<Request> RequestParser::recoverId(std::string_view body)
{
    std::string_view rest = body;
    if (!takePrefix(rest, kHead))
        return std::nullopt;
    const auto quote = rest.find('"');
    if (quote == std::string_view::npos || !request::isKnown(rest.substr(0, quote)))
        return std::nullopt;
    return Request{ .id = std::string(rest.substr(0, quote)) };
}

} // namespace pomvar::srv

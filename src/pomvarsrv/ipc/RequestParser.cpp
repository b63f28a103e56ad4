#include "pomvarsrv/ipc/RequestParser.h"

#include "wire/Protocol.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <utility>
#include <vector>

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

enum class Type
{
    string,
    integer,
    stringOrNull,
};

struct Member
{
    const char* name;
    Type type;
};

std::vector<Member> membersOf(request::Fields fields)
{
    using request::Fields;
    switch (fields) {
        case Fields::none:
            return {};
        case Fields::appkey:
            return { { "appkey", Type::string } };
        case Fields::appcat:
            return { { "appcat", Type::string } };
        case Fields::appkeyAndAppcat:
            return { { "appkey", Type::string }, { "appcat", Type::string } };
        case Fields::paneAndItemkey:
            return { { "pane", Type::integer }, { "itemkey", Type::stringOrNull } };
        case Fields::appkeyAndBeforekey:
            return { { "appkey", Type::string }, { field::beforekey, Type::string } };
        case Fields::appcatAndBeforekey:
            return { { "appcat", Type::string }, { field::beforekey, Type::string } };
        case Fields::appkeyAppcatAndBeforekey:
            return { { "appkey", Type::string },
                     { "appcat", Type::string },
                     { field::beforekey, Type::string } };
        case Fields::place:
            return { { field::x, Type::integer }, { field::y, Type::integer } };
        case Fields::keyPress:
            return { { field::key, Type::integer },
                     { field::modifiers, Type::integer },
                     { field::text, Type::string } };
        case Fields::token:
            return { { field::token, Type::string } };
    }
    return {};
}

std::optional<std::string>* stringMember(Request& request, std::string_view name)
{
    for (auto [member, into] : { std::pair{ "appkey", &request.appkey },
                                 { "appcat", &request.appcat },
                                 { "itemkey", &request.itemkey },
                                 { field::beforekey, &request.beforekey },
                                 { field::text, &request.text },
                                 { field::token, &request.token } })
        if (name == member)
            return into;
    return nullptr;
}

std::optional<std::int64_t>* integerMember(Request& request, std::string_view name)
{
    for (auto [member, into] : { std::pair{ "pane", &request.pane },
                                 { field::x, &request.x },
                                 { field::y, &request.y },
                                 { field::key, &request.key },
                                 { field::modifiers, &request.modifiers } })
        if (name == member)
            return into;
    return nullptr;
}

} // namespace

std::optional<Request> RequestParser::parse(std::string_view body)
{
    if (auto request = parseLayout(body))
        return request;
    return parseJson(body);
}

std::optional<Request> RequestParser::parseLayout(std::string_view body)
{
    using request::Fields;
    std::string_view rest = body;
    if (!takePrefix(rest, kHead))
        return std::nullopt;
    const auto quote = rest.find('"');
    if (quote == std::string_view::npos)
        return std::nullopt;
    const std::string id(rest.substr(0, quote));
    const auto fields = request::fieldsOf(id);
    if (!fields)
        return std::nullopt;
    rest.remove_prefix(quote + 1);

    switch (*fields) {
        case Fields::none:
            return rest == kEnd ? std::optional(Request{ .id = id }) : std::nullopt;
        case Fields::appkey:
            if (auto value = pastedValue(rest, kAppkeyField))
                return Request{ .id = id, .appkey = std::move(value) };
            return std::nullopt;
        case Fields::appcat:
            if (auto value = pastedValue(rest, kAppcatField))
                return Request{ .id = id, .appcat = std::move(value) };
            return std::nullopt;
        case Fields::appkeyAndAppcat:
            return toggleSetLayout(rest);
        case Fields::paneAndItemkey:
            return organizerLayout(rest);
        case Fields::appkeyAndBeforekey:
        case Fields::appcatAndBeforekey:
        case Fields::appkeyAppcatAndBeforekey:
        case Fields::place:
        case Fields::keyPress:
        case Fields::token:
            // Written as JSON from the start: read below.
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<Request> RequestParser::parseJson(std::string_view body)
{
    const auto value = nlohmann::json::parse(body, nullptr, false);
    const auto id = value.is_object() ? value.find("id") : value.end();
    if (id == value.end() || !id->is_string())
        return std::nullopt;
    Request request{ .id = id->get<std::string>() };
    const auto fields = request::fieldsOf(request.id);
    if (!fields)
        return std::nullopt;
    // The members the id carries, each of its type; no other member.
    const std::vector<Member> members = membersOf(*fields);
    if (value.size() != 1 + members.size())
        return std::nullopt;
    for (const Member& member : members) {
        const auto it = value.find(member.name);
        if (it == value.end())
            return std::nullopt;
        if (it->is_string() && member.type != Type::integer)
            *stringMember(request, member.name) = it->get<std::string>();
        else if (it->is_number_integer() && member.type == Type::integer)
            *integerMember(request, member.name) = it->get<std::int64_t>();
        else if (!(it->is_null() && member.type == Type::stringOrNull))
            return std::nullopt;
    }
    return request;
}

} // namespace pomvar::srv

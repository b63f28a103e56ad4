#include "ipc/LenientJson.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace pomvar::lenient {

using simdjson::dom::element_type;

std::string text(Value value)
{
    switch (value.type()) {
        case element_type::STRING:
            return std::string(value.get_string().value_unsafe());
        case element_type::BOOL:
            return value.get_bool().value_unsafe() ? "true" : "false";
        case element_type::INT64:
        case element_type::UINT64:
        case element_type::DOUBLE:
            // simdjson writes numbers as nlohmann does (shortest round trip, "2.0", "1e+20").
            return simdjson::to_string(value);
        default:
            return {};
    }
}

bool boolean(Value value)
{
    switch (value.type()) {
        case element_type::BOOL:
            return value.get_bool().value_unsafe();
        case element_type::INT64:
        case element_type::UINT64:
        case element_type::DOUBLE:
            return value.get_double().value_unsafe() != 0.0;
        case element_type::STRING: {
            std::string lower(value.get_string().value_unsafe());
            std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) {
                return static_cast<char>(std::tolower(c));
            });
            static const std::array<std::string_view, 5> yes = { "true", "yes", "y", "t", "1" };
            return std::find(yes.begin(), yes.end(), lower) != yes.end();
        }
        default:
            return false;
    }
}

std::optional<Value> member(Value object, std::string_view key)
{
    simdjson::dom::object members;
    if (object.get(members) != simdjson::SUCCESS)
        return std::nullopt;
    std::optional<Value> found;
    for (const auto field : members) {
        if (field.key == key)
            found = field.value; // the last of repeated keys, as nlohmann keeps
    }
    return found;
}

std::string text(Value object, std::string_view key)
{
    const auto value = member(object, key);
    return value ? text(*value) : std::string();
}

bool boolean(Value object, std::string_view key)
{
    const auto value = member(object, key);
    return value && boolean(*value);
}

namespace {

// The member as a `T` (an array or an object); nothing when missing or of another type.
template <typename T>
std::optional<T> typedMember(Value object, std::string_view key)
{
    T result;
    const auto value = member(object, key);
    if (!value || value->get(result) != simdjson::SUCCESS)
        return std::nullopt;
    return result;
}

} // namespace

std::optional<simdjson::dom::array> array(Value object, std::string_view key)
{
    return typedMember<simdjson::dom::array>(object, key);
}

std::optional<simdjson::dom::object> object(Value object, std::string_view key)
{
    return typedMember<simdjson::dom::object>(object, key);
}

} // namespace pomvar::lenient

#include "model/LenientJson.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace pomvar::lenient {

namespace {

const nlohmann::json& member(const nlohmann::json& object, const char* key)
{
    static const nlohmann::json null;
    if (!object.is_object())
        return null;
    const auto found = object.find(key);
    return found == object.end() ? null : *found;
}

} // namespace

std::string text(const nlohmann::json& value)
{
    switch (value.type()) {
        case nlohmann::json::value_t::string:
            return value.get_ref<const std::string&>();
        case nlohmann::json::value_t::boolean:
            return value.get<bool>() ? "true" : "false";
        case nlohmann::json::value_t::number_integer:
        case nlohmann::json::value_t::number_unsigned:
        case nlohmann::json::value_t::number_float:
            return value.dump();
        default:
            return {};
    }
}

bool boolean(const nlohmann::json& value)
{
    switch (value.type()) {
        case nlohmann::json::value_t::boolean:
            return value.get<bool>();
        case nlohmann::json::value_t::number_integer:
        case nlohmann::json::value_t::number_unsigned:
        case nlohmann::json::value_t::number_float:
            return value.get<double>() != 0.0;
        case nlohmann::json::value_t::string: {
            std::string lower = value.get<std::string>();
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

std::string text(const nlohmann::json& object, const char* key)
{
    return text(member(object, key));
}

bool boolean(const nlohmann::json& object, const char* key)
{
    return boolean(member(object, key));
}

const nlohmann::json& array(const nlohmann::json& object, const char* key)
{
    static const nlohmann::json empty = nlohmann::json::array();
    const auto& value = member(object, key);
    return value.is_array() ? value : empty;
}

const nlohmann::json& object(const nlohmann::json& object, const char* key)
{
    static const nlohmann::json empty = nlohmann::json::object();
    const auto& value = member(object, key);
    return value.is_object() ? value : empty;
}

} // namespace pomvar::lenient

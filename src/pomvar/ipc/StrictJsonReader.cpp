#include "ipc/StrictJsonReader.h"

#include "ipc/JsonParser.h"
#include "ipc/Output.h"

#include <limits>

namespace pomvar {

StrictJsonReader::StrictJsonReader(std::string_view text, std::string recordName)
    : m_recordName(std::move(recordName))
{
    std::string error;
    auto value = JsonParser::parse(text, &error);
    if (!value)
        fail(concat("the reply is not JSON (", error, ")"));
    m_object = std::move(*value);
    if (!m_object.is_object())
        fail(concat("the reply is a JSON ", m_object.type_name(), ", not an object"));
}

bool StrictJsonReader::boolean(const char* key) const
{
    const auto& value = member(key);
    if (!value.is_boolean())
        fail(concat("key \"", key, "\" must be a boolean, not a ", value.type_name()));
    return value.get<bool>();
}

std::int64_t StrictJsonReader::integer(const char* key) const
{
    const auto& value = member(key);
    if (!value.is_number_integer())
        fail(concat("key \"",
                    key,
                    "\" must be an integer, not a ",
                    value.is_number_float() ? "non-integral number" : value.type_name()));
    if (value.is_number_unsigned() &&
        value.get<std::uint64_t>() > std::uint64_t(std::numeric_limits<std::int64_t>::max()))
        fail(concat("key \"", key, "\" is out of the range of a 64-bit integer"));
    return value.get<std::int64_t>();
}

std::string StrictJsonReader::string(const char* key) const
{
    const auto& value = member(key);
    if (!value.is_string())
        fail(concat("key \"", key, "\" must be a string, not a ", value.type_name()));
    return value.get<std::string>();
}

const nlohmann::json& StrictJsonReader::member(const char* key) const
{
    const auto found = m_object.find(key);
    if (found == m_object.end())
        fail(concat("key \"", key, "\" is missing"));
    return *found;
}

void StrictJsonReader::fail(std::string_view what) const
{
    fatalStop(concat("Cannot decode ", m_recordName, ": ", what));
}

} // namespace pomvar

#pragma once

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <string>

namespace pomvar::test {

// A simdjson value as nlohmann holds it, to compare the two parsers: members by key, the last
// of repeated keys winning, as the readers read them.
inline nlohmann::json toNlohmann(simdjson::dom::element value)
{
    using simdjson::dom::element_type;
    switch (value.type()) {
        case element_type::ARRAY: {
            const simdjson::dom::array elements = value.get_array().value_unsafe();
            nlohmann::json array = nlohmann::json::array();
            for (const auto element : elements)
                array.push_back(toNlohmann(element));
            return array;
        }
        case element_type::OBJECT: {
            const simdjson::dom::object fields = value.get_object().value_unsafe();
            nlohmann::json object = nlohmann::json::object();
            for (const auto field : fields)
                object[std::string(field.key)] = toNlohmann(field.value);
            return object;
        }
        case element_type::INT64:
            return value.get_int64().value_unsafe();
        case element_type::UINT64:
            return value.get_uint64().value_unsafe();
        case element_type::DOUBLE:
            return value.get_double().value_unsafe();
        case element_type::STRING:
            return std::string(value.get_string().value_unsafe());
        case element_type::BOOL:
            return value.get_bool().value_unsafe();
        case element_type::NULL_VALUE:
            break;
    }
    return nullptr;
}

} // namespace pomvar::test

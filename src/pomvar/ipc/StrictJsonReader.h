#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace pomvar {

// Reads the fields of a record that the runtime server must send exactly: every key present,
// every value of its JSON type. Anything else stops the process with a message naming the key
// and the type at fault. Keys the record does not list are ignored.
class StrictJsonReader
{
public:
    // Parses `text` and requires a JSON object.
    StrictJsonReader(std::string_view text, std::string recordName);

    bool boolean(const char* key) const;
    std::int64_t integer(const char* key) const;
    std::string string(const char* key) const;

private:
    const nlohmann::json& member(const char* key) const;
    [[noreturn]] void fail(std::string_view what) const;

    nlohmann::json m_object;
    std::string m_recordName;
};

} // namespace pomvar

#pragma once

#include <string>
#include <string_view>

namespace pomvar::srv {

// Writes JSON text straight into a string, for the large menu payloads where building a
// document first would cost more than the reply itself. Text that is not valid UTF-8 is
// written with U+FFFD in place of the bad bytes, so the output is always valid JSON.
class JsonText
{
public:
    static void appendString(std::string& out, std::string_view text);
    // "key":
    static void appendKey(std::string& out, std::string_view key);
};

} // namespace pomvar::srv

#pragma once

#include <nlohmann/json.hpp>

#include <string>

// Forgiving reads of the menu payloads: a missing or mistyped value never fails, it reads as
// the empty string, false, or an empty array or object.
namespace pomvar::lenient {

// A string as is, a number as its decimal text, a boolean as "true"/"false", anything else "".
std::string text(const nlohmann::json& value);
// A boolean as is, a number as non-zero, a string as one of "true", "yes", "y", "t", "1" in any
// case, anything else false.
bool boolean(const nlohmann::json& value);

// The member `key` of `object` read as above; "" or false when `object` has no such member.
std::string text(const nlohmann::json& object, const char* key);
bool boolean(const nlohmann::json& object, const char* key);
// The member as an array or object; an empty one when missing or of another type.
const nlohmann::json& array(const nlohmann::json& object, const char* key);
const nlohmann::json& object(const nlohmann::json& object, const char* key);

} // namespace pomvar::lenient

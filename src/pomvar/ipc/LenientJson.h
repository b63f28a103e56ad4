#pragma once

#include <simdjson.h>

#include <optional>
#include <string>
#include <string_view>

// Forgiving reads of the menu payloads: a missing or mistyped value never fails, it reads as
// the empty string, false, or no array or object. A key given twice reads its last value.
namespace pomvar::lenient {

using Value = simdjson::dom::element;

// A string as is, a number as its decimal text, a boolean as "true"/"false", anything else "".
std::string text(Value value);
// A boolean as is, a number as non-zero, a string as one of "true", "yes", "y", "t", "1" in any
// case, anything else false.
bool boolean(Value value);

// The member `key` of `object`: nothing when `object` is not an object or has no such member.
std::optional<Value> member(Value object, std::string_view key);
// The member read as above; "" or false when missing.
std::string text(Value object, std::string_view key);
bool boolean(Value object, std::string_view key);
// The member as an array or object; nothing when missing or of another type.
std::optional<simdjson::dom::array> array(Value object, std::string_view key);
std::optional<simdjson::dom::object> object(Value object, std::string_view key);

} // namespace pomvar::lenient

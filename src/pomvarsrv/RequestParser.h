#pragma once

#include "Request.h"

#include <optional>
#include <string_view>

namespace pomvar::srv {

// Reads a request body. The front end writes fixed texts with its values pasted in unescaped,
// so a key holding a quote or a backslash gives text that is not JSON, or JSON that means
// something else. A body in the exact layout of a known request is therefore read raw; any
// other body is read as a JSON object; failing both, a body that opens like a request of a known
// id still yields that id (so an awaited request is answered). Plain C++, no Qt.
class RequestParser
{
public:
    // Nothing when the body holds no recognisable request id.
    static std::optional<Request> parse(std::string_view body);

private:
    static std::optional<Request> parseLayout(std::string_view body);
    static std::optional<Request> parseJson(std::string_view body);
    static std::optional<Request> recoverId(std::string_view body);
};

} // namespace pomvar::srv

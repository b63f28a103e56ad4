#pragma once

#include "pomvarsrv/ipc/Request.h"

#include <optional>
#include <string_view>

namespace pomvar::srv {

// Reads a request body; only a well-formed request of the catalogue is accepted: a known id with
// exactly the fields that id carries. The front end writes fixed texts with its values pasted in
// unescaped, so a key holding a quote or a backslash gives text that is not JSON, or JSON that
// means something else. A body in the exact layout of a known request is therefore read raw; any
// other body must be a JSON object of the same members. Plain C++, no Qt.
class RequestParser
{
public:
    // Nothing when the body is not a well-formed request.
    static std::optional<Request> parse(std::string_view body);

private:
    static std::optional<Request> parseLayout(std::string_view body);
    static std::optional<Request> parseJson(std::string_view body);
};

} // namespace pomvar::srv

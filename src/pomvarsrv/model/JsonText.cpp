#include "pomvarsrv/model/JsonText.h"

#include "wire/Utf8.h"

#include <nlohmann/json.hpp>

namespace pomvar::srv {

void JsonText::appendString(std::string& out, std::string_view text)
{
    if (!wire::isValidUtf8(text)) {
        out += nlohmann::json(std::string(text))
                   .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        return;
    }
    static constexpr char kHex[] = "0123456789abcdef";
    out += '"';
    std::size_t plain = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x20 && byte != '"' && byte != '\\')
            continue;
        out.append(text.substr(plain, i - plain));
        plain = i + 1;
        switch (byte) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\r':
                out += "\\r";
                break;
            default:
                out += "\\u00";
                out += kHex[byte >> 4];
                out += kHex[byte & 0xF];
        }
    }
    out.append(text.substr(plain));
    out += '"';
}

void JsonText::appendKey(std::string& out, std::string_view key)
{
    appendString(out, key);
    out += ':';
}

} // namespace pomvar::srv

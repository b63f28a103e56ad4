// libFuzzer target over the request parser: no input may crash it, hang it or trip a
// sanitizer, and a value pasted into a request text always comes back unchanged.
#include "RequestParser.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using pomvar::srv::Request;
using pomvar::srv::RequestParser;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::string pasted(std::string_view id, std::string_view field, std::string_view value)
{
    return "{\n    \"id\": \"" + std::string(id) + "\",\n    \"" + std::string(field) + "\": \"" +
           std::string(value) + "\"\n}";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 0xFFFF)
        return 0;
    const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 4) {
        case 0: {
            // Any body at all.
            if (const auto request = RequestParser::parse(input))
                require(!request->id.empty() || !Request::expectsReply(request->id));
            break;
        }
        case 1: {
            const auto request = RequestParser::parse(pasted("launch", "appkey", input));
            require(request && request->id == "launch" && request->appkey == std::string(input));
            break;
        }
        case 2: {
            const auto request = RequestParser::parse(pasted("get-info-appcat", "appcat", input));
            require(request && request->appcat == std::string(input));
            break;
        }
        default: {
            // Key and category split at the first NUL. A key whose text, followed by the fixed text
            // between the two values, shows that fixed text earlier cannot be told apart (desktop
            // file ids never do: they hold no line feed).
            const auto split = input.find('\0');
            const std::string_view key = input.substr(0, split);
            const std::string_view category =
                split == std::string_view::npos ? std::string_view() : input.substr(split + 1);
            const std::string separator = "\",\n    \"appcat\": \"";
            if ((std::string(key) + separator).find(separator) != key.size())
                break;
            const std::string text = "{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"" +
                                     std::string(key) + "\",\n    \"appcat\": \"" +
                                     std::string(category) + "\"\n }   ";
            const auto request = RequestParser::parse(text);
            require(request && request->appkey == std::string(key) &&
                    request->appcat == std::string(category));
            break;
        }
    }
    return 0;
}

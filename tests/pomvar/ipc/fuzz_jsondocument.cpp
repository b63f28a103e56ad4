// libFuzzer target: a reply is accepted exactly when nlohmann's parser accepts it, with the same
// value (members by key, the last of repeated keys winning), except where JsonDocument.h says
// otherwise: an integer beyond 64 bits or nesting beyond the limit is refused. nlohmann takes a
// NUL byte for the end of the input, so texts holding one are only run, not compared.
#include "DomToNlohmann.h"
#include "ipc/JsonDocument.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool hasDigitRunBeyondSixtyFourBits(const std::string& text)
{
    std::size_t run = 0;
    for (const char c : text) {
        run = c >= '0' && c <= '9' ? run + 1 : 0;
        if (run >= 19)
            return true;
    }
    return false;
}

std::size_t deepestNesting(const std::string& text)
{
    long depth = 0;
    long deepest = 0;
    for (const char c : text) {
        depth += (c == '[' || c == '{') - (c == ']' || c == '}');
        deepest = std::max(deepest, depth);
    }
    return static_cast<std::size_t>(deepest);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string error;
    const auto ours = pomvar::JsonDocument::parse(text, &error);
    if (text.find('\0') != std::string::npos)
        return 0;
    const nlohmann::json theirs = nlohmann::json::parse(text, nullptr, false);
    if (ours.has_value() == !theirs.is_discarded()) {
        if (ours && pomvar::test::toNlohmann(ours->root()).dump() != theirs.dump())
            std::abort();
        return 0;
    }
    const bool bigInteger = error == simdjson::error_message(simdjson::NUMBER_ERROR) &&
                            hasDigitRunBeyondSixtyFourBits(text);
    const bool tooDeep = error == simdjson::error_message(simdjson::DEPTH_ERROR) &&
                         deepestNesting(text) > pomvar::JsonDocument::kMaxDepth;
    if (ours || !(bigInteger || tooDeep))
        std::abort();
    return 0;
}

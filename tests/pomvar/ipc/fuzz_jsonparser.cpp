// libFuzzer target: the reply parser must accept exactly what nlohmann's parser accepts (within
// its nesting limit) and give the same value. nlohmann takes a NUL byte for the end of the input
// where we refuse it, so texts holding one are only run, not compared.
#include "ipc/JsonParser.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto ours = pomvar::JsonParser::parse(text);
    if (text.find('\0') != std::string::npos)
        return 0;
    const nlohmann::json theirs = nlohmann::json::parse(text, nullptr, false);
    if (ours.has_value() == !theirs.is_discarded()) {
        if (ours && ours->dump() != theirs.dump())
            std::abort();
        return 0;
    }
    // The only allowed difference: we refuse documents nested beyond our limit.
    int depth = 0;
    int deepest = 0;
    for (const char c : text) {
        depth += (c == '[' || c == '{') - (c == ']' || c == '}');
        deepest = std::max(deepest, depth);
    }
    if (ours || deepest <= pomvar::JsonParser::kMaxDepth)
        std::abort();
    return 0;
}

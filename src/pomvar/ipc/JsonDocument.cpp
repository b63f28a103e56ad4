#include "ipc/JsonDocument.h"

#include <string_view>

namespace pomvar {

namespace {

// A parser's buffers, sized to the largest text it has parsed, are kept for the next document:
// touching fresh memory for them costs far more than the parse itself (8 MiB: 20 ms against 2).
thread_local std::unique_ptr<simdjson::dom::parser> t_spareParser;

} // namespace

JsonDocument::~JsonDocument()
{
    if (m_parser && !t_spareParser)
        t_spareParser = std::move(m_parser);
}

std::optional<JsonDocument> JsonDocument::parse(const std::string& text, std::string* error)
{
    constexpr std::string_view bom = "\xEF\xBB\xBF";
    const std::size_t skip = std::string_view(text).starts_with(bom) ? bom.size() : 0;
    const bool needsCopy = text.capacity() - text.size() < kPadding;
    JsonDocument document;
    document.m_parser =
        t_spareParser ? std::move(t_spareParser) : std::make_unique<simdjson::dom::parser>();
    const auto result = document.m_parser->parse(text.data() + skip, text.size() - skip, needsCopy);
    if (result.error()) {
        if (error)
            *error = simdjson::error_message(result.error());
        return std::nullopt;
    }
    document.m_root = result.value_unsafe();
    return document;
}

} // namespace pomvar

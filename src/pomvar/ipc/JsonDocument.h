#pragma once

#include <simdjson.h>

#include <memory>
#include <optional>
#include <string>

namespace pomvar {

// A reply parsed with simdjson's DOM parser, which validates the whole text before anything is
// read, so a reply is accepted or refused as a whole, as nlohmann's parser would. Where the two
// differ:
// - A repeated object key keeps every value in document order; nlohmann keeps the last one. The
//   readers walk every member and let the last one win, so they read what nlohmann would.
// - An integer outside [-2^63, 2^64) makes the text invalid; nlohmann reads it as a double.
// - Nesting deeper than kMaxDepth (1023) is refused; nlohmann has no limit.
// - simdjson itself refuses a leading byte order mark; parse() skips one, as nlohmann does.
// The elements stay valid as long as the document does.
class JsonDocument
{
public:
    // The deepest nesting of arrays and objects accepted (simdjson counts one level more).
    static constexpr std::size_t kMaxDepth = simdjson::DEFAULT_MAX_DEPTH - 1;
    // Spare capacity past a text's end that lets it be parsed in place.
    static constexpr std::size_t kPadding = simdjson::SIMDJSON_PADDING;

    // Nothing when the text is not JSON (or not UTF-8); `error` then says why. A text with
    // kPadding bytes of spare capacity is parsed in place, any other is copied first.
    static std::optional<JsonDocument> parse(const std::string& text, std::string* error = nullptr);

    JsonDocument(JsonDocument&&) = default;
    JsonDocument& operator=(JsonDocument&&) = default;
    ~JsonDocument();

    simdjson::dom::element root() const { return m_root; }

private:
    JsonDocument() = default;

    std::unique_ptr<simdjson::dom::parser> m_parser;
    simdjson::dom::element m_root;
};

} // namespace pomvar

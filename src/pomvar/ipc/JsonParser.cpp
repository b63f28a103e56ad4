#include "ipc/JsonParser.h"

#include "wire/Utf8.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace pomvar {

namespace {

using nlohmann::json;

class Parser
{
public:
    explicit Parser(std::string_view text)
        : m_begin(text.data())
        , m_p(text.data())
        , m_end(text.data() + text.size())
    {}

    bool parseDocument(json& out)
    {
        if (m_end - m_p >= 3 && std::memcmp(m_p, "\xEF\xBB\xBF", 3) == 0)
            m_p += 3; // a byte order mark is skipped, as nlohmann does
        skipSpace();
        if (!parseValue(out, 0))
            return false;
        skipSpace();
        return m_p == m_end || fail("unexpected text after the value");
    }

    std::string error() const
    {
        return "syntax error at byte " + std::to_string(m_errorAt - m_begin) + ": " + m_error;
    }

private:
    bool fail(const char* what)
    {
        if (m_error.empty()) {
            m_error = what;
            m_errorAt = m_p;
        }
        return false;
    }

    void skipSpace()
    {
        while (m_p < m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
            ++m_p;
    }

    // Steps over `c` when it comes next.
    bool consume(char c)
    {
        if (m_p == m_end || *m_p != c)
            return false;
        ++m_p;
        return true;
    }

    bool literal(std::string_view word)
    {
        if (static_cast<std::size_t>(m_end - m_p) < word.size() ||
            std::memcmp(m_p, word.data(), word.size()) != 0)
            return fail("invalid literal");
        m_p += word.size();
        return true;
    }

    bool parseValue(json& out, int depth)
    {
        if (m_p == m_end)
            return fail("unexpected end of input");
        switch (*m_p) {
            case '{':
                return parseObject(out, depth + 1);
            case '[':
                return parseArray(out, depth + 1);
            case '"': {
                std::string text;
                if (!parseString(text))
                    return false;
                out = std::move(text);
                return true;
            }
            case 't':
                out = true;
                return literal("true");
            case 'f':
                out = false;
                return literal("false");
            case 'n':
                out = nullptr;
                return literal("null");
            default:
                return parseNumber(out);
        }
    }

    bool parseObject(json& out, int depth)
    {
        if (depth > JsonParser::kMaxDepth)
            return fail("nested too deeply");
        ++m_p;
        out = json::object();
        auto& members = out.get_ref<json::object_t&>();
        skipSpace();
        if (consume('}'))
            return true;
        for (;;) {
            if (m_p == m_end || *m_p != '"')
                return fail("expected a member name");
            std::string key;
            if (!parseString(key))
                return false;
            skipSpace();
            if (!consume(':'))
                return fail("expected ':'");
            skipSpace();
            // A repeated name keeps the last value, as nlohmann does.
            if (!parseValue(members[std::move(key)], depth))
                return false;
            skipSpace();
            if (consume('}'))
                return true;
            if (!consume(','))
                return fail("expected ',' or '}'");
            skipSpace();
        }
    }

    bool parseArray(json& out, int depth)
    {
        if (depth > JsonParser::kMaxDepth)
            return fail("nested too deeply");
        ++m_p;
        out = json::array();
        auto& elements = out.get_ref<json::array_t&>();
        skipSpace();
        if (consume(']'))
            return true;
        for (;;) {
            elements.emplace_back();
            if (!parseValue(elements.back(), depth))
                return false;
            skipSpace();
            if (consume(']'))
                return true;
            if (!consume(','))
                return fail("expected ',' or ']'");
            skipSpace();
        }
    }

    bool hex4(std::uint32_t& value)
    {
        if (m_end - m_p < 4)
            return fail("incomplete \\u escape");
        value = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = *m_p++;
            value <<= 4;
            if (c >= '0' && c <= '9')
                value |= static_cast<std::uint32_t>(c - '0');
            else if (c >= 'a' && c <= 'f')
                value |= static_cast<std::uint32_t>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                value |= static_cast<std::uint32_t>(c - 'A' + 10);
            else
                return fail("invalid \\u escape");
        }
        return true;
    }

    static void appendUtf8(std::string& out, std::uint32_t cp)
    {
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }

    bool escape(std::string& out)
    {
        static constexpr std::pair<char, char> kSimple[] = {
            { '"', '"' },  { '\\', '\\' }, { '/', '/' },  { 'b', '\b' },
            { 'f', '\f' }, { 'n', '\n' },  { 'r', '\r' }, { 't', '\t' },
        };
        if (m_p == m_end)
            return fail("unterminated string");
        const char kind = *m_p++;
        for (const auto& [letter, character] : kSimple) {
            if (kind == letter) {
                out.push_back(character);
                return true;
            }
        }
        if (kind != 'u') {
            --m_p;
            return fail("invalid escape");
        }
        std::uint32_t cp;
        if (!hex4(cp))
            return false;
        if (cp >= 0xDC00 && cp <= 0xDFFF)
            return fail("lone low surrogate");
        if (cp >= 0xD800 && cp <= 0xDBFF) {
            std::uint32_t low;
            if (m_end - m_p < 2 || m_p[0] != '\\' || m_p[1] != 'u')
                return fail("high surrogate without its low surrogate");
            m_p += 2;
            if (!hex4(low))
                return false;
            if (low < 0xDC00 || low > 0xDFFF)
                return fail("high surrogate without its low surrogate");
            cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
        }
        appendUtf8(out, cp);
        return true;
    }

    bool parseString(std::string& out)
    {
        ++m_p; // the opening quote
        bool nonAscii = false;
        for (;;) {
            // Copy the run up to the next quote, backslash or control character in one go.
            const char* run = m_p;
            while (m_p < m_end) {
                const auto c = static_cast<unsigned char>(*m_p);
                if (c == '"' || c == '\\' || c < 0x20)
                    break;
                nonAscii |= c >= 0x80;
                ++m_p;
            }
            out.append(run, m_p);
            if (m_p == m_end)
                return fail("unterminated string");
            const char c = *m_p;
            if (c == '"') {
                ++m_p;
                break;
            }
            if (c != '\\')
                return fail("control character in a string");
            ++m_p;
            if (!escape(out))
                return false;
        }
        if (nonAscii && !wire::isValidUtf8(out))
            return fail("invalid UTF-8 in a string");
        return true;
    }

    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    bool parseNumber(json& out)
    {
        const char* start = m_p;
        const bool negative = *m_p == '-';
        if (negative)
            ++m_p;
        if (m_p == m_end || !isDigit(*m_p))
            return fail("invalid value");
        if (*m_p == '0')
            ++m_p;
        else
            while (m_p < m_end && isDigit(*m_p))
                ++m_p;
        bool integral = true;
        if (m_p < m_end && *m_p == '.') {
            integral = false;
            ++m_p;
            if (m_p == m_end || !isDigit(*m_p))
                return fail("invalid number");
            while (m_p < m_end && isDigit(*m_p))
                ++m_p;
        }
        if (m_p < m_end && (*m_p == 'e' || *m_p == 'E')) {
            integral = false;
            ++m_p;
            if (m_p < m_end && (*m_p == '+' || *m_p == '-'))
                ++m_p;
            if (m_p == m_end || !isDigit(*m_p))
                return fail("invalid number");
            while (m_p < m_end && isDigit(*m_p))
                ++m_p;
        }
        // Like nlohmann: non-negative integers are unsigned, negative ones signed, and an
        // integer out of range becomes a floating-point number.
        if (integral && negative) {
            std::int64_t value;
            if (std::from_chars(start, m_p, value).ec == std::errc()) {
                out = value;
                return true;
            }
        } else if (integral) {
            std::uint64_t value;
            if (std::from_chars(start, m_p, value).ec == std::errc()) {
                out = value;
                return true;
            }
        }
        double value;
        const auto result = std::from_chars(start, m_p, value);
        if (result.ec == std::errc::result_out_of_range) {
            const std::string text(start, m_p); // strtod gives infinity or zero, as nlohmann keeps
            value = std::strtod(text.c_str(), nullptr);
        }
        if (!std::isfinite(value))
            return fail("number out of range");
        out = value;
        return true;
    }

    const char* m_begin;
    const char* m_p;
    const char* m_end;
    std::string m_error;
    const char* m_errorAt = nullptr;
};

} // namespace

std::optional<nlohmann::json> JsonParser::parse(std::string_view text, std::string* error)
{
    Parser parser(text);
    nlohmann::json value;
    if (parser.parseDocument(value))
        return value;
    if (error)
        *error = parser.error();
    return std::nullopt;
}

} // namespace pomvar

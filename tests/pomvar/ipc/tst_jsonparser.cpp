// The reply parser agrees with nlohmann's on the edge cases of JSON, and refuses nesting beyond
// its limit.
#include "ipc/JsonParser.h"

#include <QTest>

using namespace pomvar;
using nlohmann::json;

namespace {

// What nlohmann's own parser makes of the text: the reference.
std::optional<json> reference(const std::string& text)
{
    json value = json::parse(text, nullptr, false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

} // namespace

class TestJsonParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithNlohmannOnEdgeCases_data()
    {
        QTest::addColumn<QByteArray>("text");
        const char* cases[] = {
            "0",
            "-0",
            "01",
            "-",
            "1.",
            "[1.]",
            "1.e5",
            ".5",
            "1e5",
            "1E+2",
            "1e-2",
            "-12.5e3",
            "1e400",
            "-1e400",
            "1e-400",
            "18446744073709551615",
            "18446744073709551616",
            "-9223372036854775808",
            "-9223372036854775809",
            "9223372036854775808",
            "\"\\u00e9\\ud83d\\ude00\"",
            "\"\\ud83d\"",
            "\"\\ude00\"",
            "\"\\ud83dx\"",
            "\"\\u12G4\"",
            "\"a\\qb\"",
            "\"tab\there\"",
            "\"\\/\\b\\f\"",
            "\"\\u0000\"",
            "\"unterminated",
            "\"\xc3\xa9\"",
            "\"\xc3\"",
            "\"\xed\xa0\x80\"",
            "true",
            "tru",
            "nul",
            "null x",
            "[1,2,]",
            "[,]",
            "[]",
            "{}",
            "{\"a\":1,}",
            "{\"a\" 1}",
            "{1:2}",
            "{\"a\":1,\"a\":2}",
            " \t\r\n[ 1 , { \"b\" : [ ] } ] \n",
            "",
            "   ",
            "\xEF\xBB\xBF{}",
            "[\"a\"]]",
            "{\"k\": [true, false, null]}",
            "[1.5e-7, -0.0, 2.0]",
        };
        for (const char* text : cases)
            QTest::newRow(text) << QByteArray(text);
    }

    void agreesWithNlohmannOnEdgeCases()
    {
        QFETCH(QByteArray, text);
        const std::string input = text.toStdString();
        std::string error;
        const auto ours = JsonParser::parse(input, &error);
        const auto theirs = reference(input);
        QCOMPARE(ours.has_value(), theirs.has_value());
        if (ours) {
            QCOMPARE(ours->dump(), theirs->dump());
            QVERIFY(ours->type() == theirs->type());
        } else {
            QVERIFY(error.starts_with("syntax error at byte "));
        }
    }

    void refusesNestingBeyondItsLimit()
    {
        // Arrays and objects count alike: the limit holds for each, at its exact depth.
        const auto nested = [](int depth, const std::string& open, const std::string& close) {
            std::string text;
            for (int i = 0; i < depth; ++i)
                text += open;
            text += "1";
            for (int i = 0; i < depth; ++i)
                text += close;
            return text;
        };
        const int limit = JsonParser::kMaxDepth;
        for (const auto& [open, close] : { std::pair{ "[", "]" }, std::pair{ "{\"k\":", "}" } }) {
            QVERIFY2(JsonParser::parse(nested(limit, open, close)), open);
            std::string error;
            QVERIFY2(!JsonParser::parse(nested(limit + 1, open, close), &error), open);
            QVERIFY(error.find("nested too deeply") != std::string::npos);
        }
        QVERIFY(!JsonParser::parse(std::string(1 << 20, '[')));
    }
};

QTEST_APPLESS_MAIN(TestJsonParser)
#include "tst_jsonparser.moc"

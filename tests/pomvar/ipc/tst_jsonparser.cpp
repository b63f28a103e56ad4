#include "ipc/JsonParser.h"

#include <QTest>

#include <random>

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

json randomValue(std::mt19937& random, int depth)
{
    const int kind = static_cast<int>(random() % (depth > 3 ? 6 : 8));
    switch (kind) {
        case 0:
            return nullptr;
        case 1:
            return random() % 2 == 0;
        case 2:
            return static_cast<std::int64_t>(random()) - (1LL << 31);
        case 3:
            return std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 80) - 40);
        case 4:
        case 5: {
            std::string text;
            const char* pieces[] = { "a", "Ö", "\"", "\\", "/", "\n", "\x01", "😀", "日本", " " };
            for (unsigned i = random() % 8; i > 0; --i)
                text += pieces[random() % 10];
            return text;
        }
        case 6: {
            json array = json::array();
            for (unsigned i = random() % 5; i > 0; --i)
                array.push_back(randomValue(random, depth + 1));
            return array;
        }
        default: {
            json object = json::object();
            for (unsigned i = random() % 5; i > 0; --i)
                object["k" + std::to_string(random() % 7)] = randomValue(random, depth + 1);
            return object;
        }
    }
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

    void roundTripsRandomDocuments()
    {
        std::mt19937 random(20261122);
        for (int i = 0; i < 2000; ++i) {
            const json value = randomValue(random, 0);
            for (const int indent : { -1, 2 }) {
                const std::string text = value.dump(indent);
                const auto parsed = JsonParser::parse(text);
                QVERIFY2(parsed, text.c_str());
                QVERIFY(*parsed == value);
                QCOMPARE(parsed->dump(), reference(text)->dump());
            }
        }
    }

    void refusesNestingBeyondItsLimit()
    {
        const int depth = JsonParser::kMaxDepth;
        QVERIFY(JsonParser::parse(std::string(depth, '[') + std::string(depth, ']')));
        std::string error;
        QVERIFY(
            !JsonParser::parse(std::string(depth + 1, '[') + std::string(depth + 1, ']'), &error));
        QVERIFY(error.find("nested too deeply") != std::string::npos);
        QVERIFY(!JsonParser::parse(std::string(1 << 20, '[')));
    }
};

QTEST_APPLESS_MAIN(TestJsonParser)
#include "tst_jsonparser.moc"

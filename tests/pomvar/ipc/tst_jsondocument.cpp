// Replies are accepted or refused as nlohmann's parser would, with the same values, except for
// the differences JsonDocument.h lists; nesting stops at simdjson's depth limit.
#include "DomToNlohmann.h"
#include "ipc/JsonDocument.h"

#include <QTest>

using namespace pomvar;
using nlohmann::json;

class TestJsonDocument : public QObject
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
            "-9223372036854775808",
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
        const auto ours = JsonDocument::parse(input, &error);
        const json theirs = json::parse(input, nullptr, false);
        QCOMPARE(ours.has_value(), !theirs.is_discarded());
        if (ours)
            QCOMPARE(test::toNlohmann(ours->root()).dump(), theirs.dump());
        else
            QVERIFY(!error.empty());
    }

    // Where simdjson parts from nlohmann: integers beyond 64 bits are refused, not rounded.
    void refusesIntegersBeyondSixtyFourBits_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("2^64") << QByteArray("18446744073709551616");
        QTest::newRow("-2^63 - 1") << QByteArray("-9223372036854775809");
        QTest::newRow("in an app") << QByteArray(R"([{"name": 100000000000000000000000}])");
    }
    void refusesIntegersBeyondSixtyFourBits()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!JsonDocument::parse(text.toStdString()));
        QVERIFY(!json::parse(text.toStdString(), nullptr, false).is_discarded());
    }

    void refusesNestingBeyondItsLimit()
    {
        // Arrays and objects count alike: the limit holds for each, at its exact depth.
        const auto nested =
            [](std::size_t depth, const std::string& open, const std::string& close) {
                std::string text;
                for (std::size_t i = 0; i < depth; ++i)
                    text += open;
                text += "1";
                for (std::size_t i = 0; i < depth; ++i)
                    text += close;
                return text;
            };
        const std::size_t limit = JsonDocument::kMaxDepth;
        for (const auto& [open, close] : { std::pair{ "[", "]" }, std::pair{ "{\"k\":", "}" } }) {
            QVERIFY2(JsonDocument::parse(nested(limit, open, close)), open);
            QVERIFY2(!JsonDocument::parse(nested(limit + 1, open, close)), open);
        }
        QVERIFY(!JsonDocument::parse(std::string(1 << 20, '[')));
    }

    void parsesInPlaceOrFromACopyAlike()
    {
        std::string padded = R"({"k": "v"})";
        padded.reserve(padded.size() + simdjson::SIMDJSON_PADDING);
        const std::string tight(padded.data(), padded.size());
        QCOMPARE(test::toNlohmann(JsonDocument::parse(padded)->root()).dump(),
                 test::toNlohmann(JsonDocument::parse(tight)->root()).dump());
    }
};

QTEST_APPLESS_MAIN(TestJsonDocument)
#include "tst_jsondocument.moc"

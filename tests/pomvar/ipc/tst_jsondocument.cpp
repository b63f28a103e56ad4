// What JsonDocument adds to simdjson's parser: a byte order mark is skipped, a text is read in
// place or from a copy alike, a refusal says why, and nesting stops at kMaxDepth.
#include "ipc/JsonDocument.h"

#include <nlohmann/json.hpp>

#include <QTest>

using pomvar::JsonDocument;

class TestJsonDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPaddedTightAndMarkedTextsAlike()
    {
        const auto valueOfK = [](const std::string& text) -> std::string {
            const auto document = JsonDocument::parse(text);
            return document ? std::string(document->root()["k"].get_string().value()) : "";
        };
        std::string padded = R"({"k": "v"})";
        padded.reserve(padded.size() + simdjson::SIMDJSON_PADDING);
        QCOMPARE(valueOfK(padded), "v");
        QCOMPARE(valueOfK(std::string(padded)), "v"); // a copy has no spare capacity
        QCOMPARE(valueOfK("\xEF\xBB\xBF" + padded), "v");
    }

    // The edge cases replies were checked against before simdjson: each is accepted exactly when
    // nlohmann accepts it. The one difference, integers beyond 64 bits, is a row below.
    void acceptsWhatNlohmannAccepts()
    {
        const QByteArray cases = // separated by '|'
            "0|-0|01|-|1.|[1.]|1.e5|.5|1e5|1E+2|1e-2|-12.5e3|1e400|-1e400|1e-400|"
            "18446744073709551615|-9223372036854775808|9223372036854775808|"
            "\"\\u00e9\\ud83d\\ude00\"|\"\\ud83d\"|\"\\ude00\"|\"\\ud83dx\"|\"\\u12G4\"|"
            "\"a\\qb\"|\"tab\there\"|\"\\/\\b\\f\"|\"\\u0000\"|\"unterminated|\"\xc3\xa9\"|"
            "\"\xc3\"|\"\xed\xa0\x80\"|true|tru|nul|null x|[1,2,]|[,]|[]|{}|{\"a\":1,}|"
            "{\"a\" 1}|{1:2}|{\"a\":1,\"a\":2}| \t\r\n[ 1 , { \"b\" : [ ] } ] \n||   |"
            "\xEF\xBB\xBF{}|[\"a\"]]|{\"k\": [true, false, null]}|[1.5e-7, -0.0, 2.0]";
        for (const QByteArray& text : cases.split('|'))
            QVERIFY2(JsonDocument::parse(text.toStdString()).has_value() ==
                         nlohmann::json::accept(text.toStdString()),
                     text.constData());
    }

    void refusesSayingWhy()
    {
        const auto nested = [](std::size_t depth) {
            return std::string(depth, '[') + '1' + std::string(depth, ']');
        };
        const std::pair<std::string, bool> cases[] = {
            { "{\"k\":}", false },
            { "[18446744073709551616]", false }, // 2^64
            { nested(JsonDocument::kMaxDepth), true },
            { nested(JsonDocument::kMaxDepth + 1), false },
        };
        for (const auto& [text, accepted] : cases) {
            std::string error;
            QCOMPARE(JsonDocument::parse(text, &error).has_value(), accepted);
            QCOMPARE(error.empty(), accepted);
        }
    }
};

QTEST_APPLESS_MAIN(TestJsonDocument)
#include "tst_jsondocument.moc"

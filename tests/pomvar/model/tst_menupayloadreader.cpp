// How the front end reads the server's replies: what JsonDocument adds to simdjson's parser (a
// byte order mark skipped, a text read in place or from a copy alike, a refusal that says why,
// nesting stopped at kMaxDepth), the lenient reads of fields, and the menu payloads' rows.
#include "ipc/JsonDocument.h"
#include "ipc/LenientJson.h"
#include "model/AppCatExpansion.h"
#include "model/MenuList.h"
#include "model/MenuPayloadReader.h"

#include <nlohmann/json.hpp>

#include <QSignalSpy>
#include <QTest>

using namespace pomvar;

namespace {

JsonDocument parsed(const std::string& text)
{
    auto document = JsonDocument::parse(text);
    if (!document)
        qFatal("not JSON: %s", text.c_str());
    return std::move(*document);
}

// An app row as the reader makes it.
TreeItem app(std::string key, bool pinned = false, bool pinnedRow = false, std::string icon = "")
{
    return { key, "", pinnedRow, pinned, "", icon, icon, std::nullopt };
}

TreeItem category(std::string name, std::vector<TreeItem> apps)
{
    return { name, name, false, false, std::nullopt, std::nullopt, std::nullopt, std::move(apps) };
}

} // namespace

class TestMenuPayloadReader : public QObject
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
        const auto nested = [](std::size_t depth) {
            return std::string(depth, '[') + '1' + std::string(depth, ']');
        };
        // A refusal says why.
        for (const auto& [text, accepted] : { std::pair{ std::string("{\"k\":}"), false },
                                              { "[18446744073709551616]", false }, // 2^64
                                              { nested(JsonDocument::kMaxDepth), true },
                                              { nested(JsonDocument::kMaxDepth + 1), false } }) {
            std::string error;
            QCOMPARE(JsonDocument::parse(text, &error).has_value(), accepted);
            QCOMPARE(error.empty(), accepted);
        }
    }

    void lenientReadsNeverFail()
    {
        // A value of "k", then what it reads as text and as a boolean.
        const std::tuple<std::string, std::string, bool> cases[] = {
            { "42", "42", true },      { "0", "0", false },
            { "true", "true", true },  { "null", "", false },
            { "[1]", "", false },      { "\"Yes\"", "Yes", true },
            { "\"no\"", "no", false }, { "\"no\", \"k\": \"yes\"", "yes", true }, // the last wins
        };
        for (const auto& [value, text, boolean] : cases) {
            const auto document = parsed("{\"k\": " + value + "}");
            const auto object = document.root();
            QCOMPARE(lenient::text(object, "k"), text);
            QCOMPARE(lenient::boolean(object, "k"), boolean);
            QCOMPARE(lenient::text(object, "missing"), std::string());
            QCOMPARE(lenient::array(object, "k").has_value(), value.starts_with('['));
            QVERIFY(!lenient::object(object, "k"));
        }
    }

    void allAppsAndRecentAreAppendedRowByRow()
    {
        MenuList list;
        QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
        const std::string full =
            R"({"appkey": "a", "name": "A", "bundleid": "b", "iconpath": "i", "iconpath2x": "j")";
        MenuPayloadReader::readAllApps(
            parsed("[" + full +
                   R"(, "pinned": 1}, {"name": "No key"}, {"appkey": "y", "appkey": "x"}])")
                .root(),
            list);
        QCOMPARE(inserted.count(), 3);
        TreeItem first = { "a", "A", false, true, "b", "i", "j", std::nullopt }, noKey = app("");
        noKey.name = "No key";
        QVERIFY(list.items() == (std::vector{ first, noKey, app("x") }));

        MenuList recent;
        MenuPayloadReader::readRecentApps(parsed("{\"a\": " + full + "}}").root(), recent);
        QVERIFY(recent.isEmpty()); // an object gives no recent rows
        MenuPayloadReader::readRecentApps(parsed("[" + full + "}]").root(), recent);
        first.isPinned = false;
        QVERIFY(recent.items() == std::vector{ first });

        // An object's members are read as apps ordered by key, a repeated key once, last value.
        MenuList fromObject;
        MenuPayloadReader::readAllApps(
            parsed(R"({"k2": {"appkey": "b"}, "k1": {"appkey": "a"}, "k2": {"appkey": "c"}})")
                .root(),
            fromObject);
        MenuPayloadReader::readAllApps(parsed("\"text\"").root(), fromObject);
        QVERIFY(fromObject.items() == (std::vector{ app("a"), app("c") }));
    }

    void myAppsListsThePinnedBlockThenCategories()
    {
        MenuList list;
        // Pinned apps come without "pinned", as the server sends them.
        MenuPayloadReader::readMyApps(
            parsed(R"({"pinnedapps": [{"appkey": "p"}], "appcats": ["Work", "Empty"],
                       "appcatapps": {"Work": [{"appkey": "w", "pinned": true}], "Empty": []}})")
                .root(),
            list);
        QVERIFY(list.items() == (std::vector{ app("p", true, true),
                                              category("Work", { app("w", true) }),
                                              category("Empty", {}) }));
    }

    void renamesKeepTheirOrderAndFlagTheMalformed()
    {
        const auto renames = MenuPayloadReader::readRenames(
            parsed(
                R"({"renamedAppcats": [{"old": "A", "new": "B"}, {"new": 2, "old": null}, {"old": "C"}, 5]})")
                .root());
        const auto text = [](const CategoryRename& r) {
            return r.oldName + ">" + r.newName + ":" + r.malformed.value_or("-");
        };
        QStringList read;
        for (const CategoryRename& rename : renames)
            read << QString::fromStdString(text(rename));
        QCOMPARE(read, QStringList({ "A>B:-", ">2:-", ">:{\"old\":\"C\"}", ">:5" }));
        QVERIFY(MenuPayloadReader::readRenames(parsed(R"({"renamedAppcats": {}})").root()).empty());
    }
};

QTEST_GUILESS_MAIN(TestMenuPayloadReader)
#include "tst_menupayloadreader.moc"

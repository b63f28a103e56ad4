#include "ipc/JsonDocument.h"
#include "ipc/LenientJson.h"
#include "ipc/MenuPayloadReader.h"
#include "model/MenuList.h"

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

} // namespace

class TestMenuPayloadReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        const std::string app =
            R"({"appkey": "a", "name": "A", "bundleid": "b", "iconpath": "i", "iconpath2x": "j")";
        const auto payload = parsed(
            "[" + app + R"(, "pinned": 1}, {"name": "No key"}, {"appkey": "y", "appkey": "x"}])");
        MenuPayloadReader::readAllApps(payload.root(), list);
        QCOMPARE(inserted.count(), 3);
        const TreeItem& first = list.items()[0];
        QCOMPARE(first.id + first.name + *first.bundleID + *first.iconPath + *first.iconPath2x,
                 std::string("aAbij"));
        QVERIFY(first.isPinned && !first.isPinnedAppMenuItem && !first.isCategory());
        QVERIFY(list.items()[1].iconPath == "" && !list.items()[1].isPinned);
        QCOMPARE(list.items()[2].id, std::string("x"));

        MenuList recent;
        MenuPayloadReader::readRecentApps(parsed("{\"a\": " + app + "}}").root(), recent);
        QVERIFY(recent.isEmpty()); // an object gives no recent rows
        MenuPayloadReader::readRecentApps(parsed("[" + app + "}]").root(), recent);
        QCOMPARE(recent.size(), std::size_t{ 1 });
        QVERIFY(!recent.items()[0].isPinned);

        // An object's members are read as apps ordered by key, a repeated key once, last value.
        MenuList fromObject;
        MenuPayloadReader::readAllApps(
            parsed(R"({"k2": {"appkey": "b"}, "k1": {"appkey": "a"}, "k2": {"appkey": "c"}})")
                .root(),
            fromObject);
        MenuPayloadReader::readAllApps(parsed("\"text\"").root(), fromObject);
        QCOMPARE(fromObject.size(), std::size_t{ 2 });
        QCOMPARE(fromObject.items()[0].id + fromObject.items()[1].id, std::string("ac"));
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
        QCOMPARE(list.size(), std::size_t{ 3 });
        const auto& pinned = list.items()[0];
        QVERIFY(pinned.isPinnedAppMenuItem && pinned.isPinned && !pinned.isCategory());
        const auto& work = list.items()[1];
        QVERIFY(work.isCategory() && work.id == "Work" && work.name == "Work");
        QVERIFY(!work.bundleID && !work.iconPath && !work.iconPath2x && !work.isPinned);
        QCOMPARE(work.children->size(), std::size_t{ 1 });
        QVERIFY(work.children->front().isPinned && !work.children->front().isPinnedAppMenuItem);
        QVERIFY(list.items()[2].isCategory() && list.items()[2].children->empty());
    }

    void renamesKeepTheirOrderAndFlagTheMalformed()
    {
        const auto payload = parsed(
            R"({"renamedAppcats": [{"old": "A", "new": "B"}, {"new": 2, "old": null}, {"old": "C"}, 5]})");
        const auto renames = MenuPayloadReader::readRenames(payload.root());
        QCOMPARE(renames.size(), std::size_t{ 4 });
        QVERIFY(renames[0].oldName == "A" && renames[0].newName == "B" && !renames[0].malformed);
        QVERIFY(renames[1].oldName.empty() && renames[1].newName == "2" && !renames[1].malformed);
        QCOMPARE(renames[2].malformed, std::optional<std::string>(R"({"old":"C"})"));
        QCOMPARE(renames[3].malformed, std::optional<std::string>("5"));
        QVERIFY(MenuPayloadReader::readRenames(parsed(R"({"renamedAppcats": {}})").root()).empty());
    }
};

QTEST_GUILESS_MAIN(TestMenuPayloadReader)
#include "tst_menupayloadreader.moc"

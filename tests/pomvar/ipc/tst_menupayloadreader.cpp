#include "FakeMenus.h"
#include "ipc/JsonDocument.h"
#include "ipc/LenientJson.h"
#include "ipc/MenuPayloadReader.h"
#include "model/MenuList.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace pomvar;

Q_DECLARE_METATYPE(std::string)

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
    void lenientReadsNeverFail_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<std::string>("text");
        QTest::addColumn<bool>("boolean");
        QTest::newRow("number") << QByteArray("42") << std::string("42") << true;
        QTest::newRow("fraction") << QByteArray("-0.5") << std::string("-0.5") << true;
        QTest::newRow("zero") << QByteArray("0") << std::string("0") << false;
        QTest::newRow("2.0") << QByteArray("2.0") << std::string("2.0") << true;
        QTest::newRow("1e20") << QByteArray("1e20") << std::string("1e+20") << true;
        QTest::newRow("2^64 - 1") << QByteArray("18446744073709551615")
                                  << std::string("18446744073709551615") << true;
        QTest::newRow("true") << QByteArray("true") << std::string("true") << true;
        QTest::newRow("null") << QByteArray("null") << std::string() << false;
        QTest::newRow("array") << QByteArray("[1]") << std::string() << false;
        QTest::newRow("Yes") << QByteArray("\"Yes\"") << std::string("Yes") << true;
        QTest::newRow("t") << QByteArray("\"t\"") << std::string("t") << true;
        QTest::newRow("TRUE") << QByteArray("\"TRUE\"") << std::string("TRUE") << true;
        QTest::newRow("1") << QByteArray("\"1\"") << std::string("1") << true;
        QTest::newRow("no") << QByteArray("\"no\"") << std::string("no") << false;
        QTest::newRow("on") << QByteArray("\"on\"") << std::string("on") << false;
        QTest::newRow("repeated key: the last")
            << QByteArray("\"no\", \"k\": \"yes\"") << std::string("yes") << true;
    }
    void lenientReadsNeverFail()
    {
        QFETCH(QByteArray, value);
        QFETCH(std::string, text);
        QFETCH(bool, boolean);
        const auto document = parsed("{\"k\": " + value.toStdString() + "}");
        const auto object = document.root();
        QCOMPARE(lenient::text(object, "k"), text);
        QCOMPARE(lenient::boolean(object, "k"), boolean);
        QCOMPARE(lenient::text(object, "missing"), std::string());
        QCOMPARE(lenient::array(object, "k").has_value(), value.startsWith('['));
        QVERIFY(!lenient::object(object, "k"));
    }

    void allAppsAndRecentAreAppendedRowByRow()
    {
        MenuList list;
        QAbstractItemModelTester tester(&list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
        test::FakeMenus menus;
        menus.addApp({ "a.desktop", "Alpha", "/i/a.png", "/i/a2.png", true });
        menus.addApp({ "x", "X", "", "" });
        const std::string x = menus.allApps()[1].dump();
        const auto payload = parsed("[" + menus.allApps()[0].dump() +
                                    R"(, {"name": "No key"}, {"appkey": "y", "appkey": "x"}])");
        MenuPayloadReader::readAllApps(payload.root(), list);
        QCOMPARE(inserted.count(), 3);
        QCOMPARE(list.size(), std::size_t{ 3 });
        const TreeItem& first = list.items()[0];
        QCOMPARE(first.id, std::string("a.desktop"));
        QVERIFY(first.isPinned && !first.isPinnedAppMenuItem && !first.isCategory());
        QCOMPARE(first.iconPath2x, std::optional<std::string>("/i/a2.png"));
        QCOMPARE(list.items()[1].iconPath, std::optional<std::string>(""));
        QCOMPARE(list.items()[2].id, std::string("x"));
        QCOMPARE(list.data(list.index(0, 0)).toString(), QStringLiteral("Alpha"));

        MenuList recent;
        MenuPayloadReader::readRecentApps(parsed("{\"a\": " + x + "}").root(), recent);
        QVERIFY(recent.isEmpty()); // an object gives no recent rows
        MenuPayloadReader::readRecentApps(parsed("[" + x + "]").root(), recent);
        QCOMPARE(recent.size(), std::size_t{ 1 });

        // An object's members are read as apps ordered by key, a repeated key once, last value.
        MenuList fromObject;
        MenuPayloadReader::readAllApps(
            parsed(R"({"k2": {"appkey": "b"}, "k1": {"appkey": "a"}, "k2": {"appkey": "c"}})")
                .root(),
            fromObject);
        QCOMPARE(fromObject.size(), std::size_t{ 2 });
        QCOMPARE(fromObject.items()[0].id + fromObject.items()[1].id, std::string("ac"));
        MenuPayloadReader::readAllApps(parsed("\"text\"").root(), fromObject);
        QCOMPARE(fromObject.size(), std::size_t{ 2 });

        list.clear();
        QVERIFY(list.isEmpty());
        QCOMPARE(list.rowCount(), 0);
    }

    void myAppsListsThePinnedBlockThenCategories()
    {
        MenuList list;
        QAbstractItemModelTester tester(&list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        test::FakeMenus menus;
        menus.addApp({ "p.desktop", "Pinned", "", "" });
        menus.addApp({ "w.desktop", "Writer", "", "", true });
        menus.pin("p.desktop");
        menus.addCategory("Work", { "w.desktop" });
        menus.addCategory("Empty", {});
        MenuPayloadReader::readMyApps(parsed(menus.myApps().dump()).root(), list);
        QCOMPARE(list.size(), std::size_t{ 3 });
        const auto& pinned = list.items()[0];
        QVERIFY(pinned.isPinnedAppMenuItem && pinned.isPinned && !pinned.isCategory());
        const auto& work = list.items()[1];
        QVERIFY(work.isCategory() && work.id == "Work" && work.name == "Work");
        QVERIFY(!work.bundleID && !work.iconPath && !work.iconPath2x && !work.isPinned);
        QCOMPARE(work.children->size(), std::size_t{ 1 });
        QVERIFY(work.children->front().isPinned && !work.children->front().isPinnedAppMenuItem);
        QVERIFY(list.items()[2].isCategory() && list.items()[2].children->empty());

        const QModelIndex workIndex = list.index(1, 0);
        QCOMPARE(list.rowCount(workIndex), 1);
        QCOMPARE(list.data(list.index(0, 0, workIndex), MenuList::IdRole).toString(),
                 QStringLiteral("w.desktop"));
        QCOMPARE(list.parent(list.index(0, 0, workIndex)), workIndex);

        MenuList empty;
        MenuPayloadReader::readMyApps(parsed("{}").root(), empty);
        QVERIFY(empty.isEmpty());
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

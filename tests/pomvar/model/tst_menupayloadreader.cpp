#include "FakeMenus.h"
#include "model/LenientJson.h"
#include "model/MenuList.h"
#include "model/MenuPayloadReader.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using nlohmann::json;

Q_DECLARE_METATYPE(nlohmann::json)
Q_DECLARE_METATYPE(std::string)

class TestMenuPayloadReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lenientReadsNeverFail_data()
    {
        QTest::addColumn<json>("value");
        QTest::addColumn<std::string>("text");
        QTest::addColumn<bool>("boolean");
        QTest::newRow("number") << json(42) << std::string("42") << true;
        QTest::newRow("fraction") << json(-0.5) << std::string("-0.5") << true;
        QTest::newRow("zero") << json(0) << std::string("0") << false;
        QTest::newRow("true") << json(true) << std::string("true") << true;
        QTest::newRow("null") << json(nullptr) << std::string() << false;
        QTest::newRow("array") << json::array({ 1 }) << std::string() << false;
        QTest::newRow("Yes") << json("Yes") << std::string("Yes") << true;
        QTest::newRow("t") << json("t") << std::string("t") << true;
        QTest::newRow("TRUE") << json("TRUE") << std::string("TRUE") << true;
        QTest::newRow("1") << json("1") << std::string("1") << true;
        QTest::newRow("no") << json("no") << std::string("no") << false;
        QTest::newRow("on") << json("on") << std::string("on") << false;
    }
    void lenientReadsNeverFail()
    {
        QFETCH(json, value);
        QFETCH(std::string, text);
        QFETCH(bool, boolean);
        const json object = { { "k", value } };
        QCOMPARE(lenient::text(object, "k"), text);
        QCOMPARE(lenient::boolean(object, "k"), boolean);
        QCOMPARE(lenient::text(object, "missing"), std::string());
        QCOMPARE(lenient::array(object, "k").is_array(), true);
        QCOMPARE(lenient::array(object, "k").empty(), !value.is_array());
        QVERIFY(lenient::object(object, "k").empty());
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
        const json x = menus.allApps()[1];
        const json payload = { menus.allApps()[0], json{ { "name", "No key" } }, x };
        MenuPayloadReader::readAllApps(payload, list);
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
        MenuPayloadReader::readRecentApps(json{ { "a", x } }, recent);
        QVERIFY(recent.isEmpty()); // an object gives no recent rows
        MenuPayloadReader::readRecentApps(json::array({ x }), recent);
        QCOMPARE(recent.size(), std::size_t{ 1 });

        MenuList fromObject;
        MenuPayloadReader::readAllApps(json{ { "k", x } }, fromObject);
        QCOMPARE(fromObject.size(), std::size_t{ 1 });
        MenuPayloadReader::readAllApps(json("text"), fromObject);
        QCOMPARE(fromObject.size(), std::size_t{ 1 });

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
        const json payload = menus.myApps();
        MenuPayloadReader::readMyApps(payload, list);
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
        MenuPayloadReader::readMyApps(json::object(), empty);
        QVERIFY(empty.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestMenuPayloadReader)
#include "tst_menupayloadreader.moc"

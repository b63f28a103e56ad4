#include "MenuPayloads.h"
#include "model/LenientJson.h"
#include "model/MenuList.h"
#include "model/MenuPayloadReader.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using nlohmann::json;

class TestMenuPayloadReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lenientReadsNeverFail()
    {
        const json app = { { "name", 42 },
                           { "bundleid", true },
                           { "iconpath", nullptr },
                           { "iconpath2x", { 1, 2 } },
                           { "pinned", "Yes" } };
        QCOMPARE(lenient::text(app, "appkey"), std::string());
        QCOMPARE(lenient::text(app, "name"), std::string("42"));
        QCOMPARE(lenient::text(app, "bundleid"), std::string("true"));
        QCOMPARE(lenient::text(app, "iconpath"), std::string());
        QCOMPARE(lenient::text(app, "iconpath2x"), std::string());
        QCOMPARE(lenient::text(json(1.5)), std::string("1.5"));
        QVERIFY(lenient::boolean(app, "pinned"));
        for (const json& yes :
             { json("t"), json("Y"), json("TRUE"), json("1"), json(2), json(-0.5) })
            QVERIFY2(lenient::boolean(yes), yes.dump().c_str());
        for (const json& no : { json("no"), json("on"), json(0), json(nullptr), json::array() })
            QVERIFY2(!lenient::boolean(no), no.dump().c_str());
        QVERIFY(lenient::array(json{ { "a", { { "b", 1 } } } }, "a").is_array());
        QVERIFY(lenient::array(json{ { "a", "x" } }, "a").empty());
        QVERIFY(lenient::object(json::array(), "a").empty());
    }

    void allAppsAndRecentAreAppendedRowByRow()
    {
        MenuList list;
        QAbstractItemModelTester tester(&list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
        const json payload = { test::appJson("a.desktop", "Alpha", true),
                               json{ { "name", "No key" } },
                               test::appJson("a.desktop", "Alpha again") };
        MenuPayloadReader::readAllApps(payload, list);
        QCOMPARE(inserted.count(), 3);
        QCOMPARE(list.size(), std::size_t{ 3 });
        const TreeItem& first = list.items()[0];
        QCOMPARE(first.id, std::string("a.desktop"));
        QVERIFY(first.isPinned && !first.isPinnedAppMenuItem && !first.isCategory());
        QCOMPARE(first.bundleID, std::optional<std::string>("a.desktop.id"));
        QCOMPARE(list.items()[1].iconPath, std::optional<std::string>(""));
        QCOMPARE(list.items()[2].id, first.id); // duplicates are kept as they come
        QCOMPARE(list.data(list.index(0, 0)).toString(), QStringLiteral("Alpha"));

        MenuList recent;
        MenuPayloadReader::readRecentApps(json{ { "a", test::appJson("x", "X") } }, recent);
        QVERIFY(recent.isEmpty()); // an object gives no recent rows
        MenuPayloadReader::readRecentApps(json::array({ test::appJson("x", "X") }), recent);
        QCOMPARE(recent.size(), std::size_t{ 1 });

        MenuList fromObject;
        MenuPayloadReader::readAllApps(json{ { "k", test::appJson("x", "X") } }, fromObject);
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
        auto payload = test::myAppsJson(
            { test::appJson("p.desktop", "Pinned", false) },
            { { "Work", { test::appJson("w.desktop", "Writer", true) } }, { "Empty", {} } });
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

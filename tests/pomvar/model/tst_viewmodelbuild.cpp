#include "FakeRuntimeServer.h"
#include "MenuPayloads.h"
#include "model/PomvarViewModel.h"

#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;
using Ids = std::vector<std::string>;
using nlohmann::json;

Q_DECLARE_METATYPE(nlohmann::json)
Q_DECLARE_METATYPE(Ids)

namespace {

// A server with two apps, one pinned, one category and one recent app.
void serveSmallMenus(FakeRuntimeServer& server)
{
    const json apps = test::allAppsJson(2);
    server.setDefaultReply("get-allapps-menu-data", Reply::json(apps));
    server.setDefaultReply("get-recentapps-menu-data", Reply::json(json::array({ apps[1] })));
    server.setDefaultReply("get-myapps-menu-data",
                           Reply::json(test::myAppsJson({ apps[0] }, { { "Work", { apps[1] } } })));
}

// Ids of the menu-data requests among what the server received.
Ids menuFetches(const FakeRuntimeServer& server)
{
    Ids fetched;
    for (const auto& id : server.requestIds()) {
        if (id.ends_with("-menu-data"))
            fetched.push_back(id);
    }
    return fetched;
}

} // namespace

class TestViewModelBuild : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstBuildFetchesEverythingInOrder()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        serveSmallMenus(server);
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QCOMPARE(server.requestIds(),
                 (Ids{ "get-app-status",
                       "get-user-prefs",
                       "get-allapps-menu-data",
                       "get-myapps-menu-data",
                       "get-recentapps-menu-data",
                       "check-update-available" }));
        QVERIFY(vm.isReady());
        QVERIFY(vm.prefs());
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QCOMPARE(vm.myAppsTreeData().size(), std::size_t{ 2 });
        QCOMPARE(vm.recentAppsMenuData().size(), std::size_t{ 1 });
        QCOMPARE(vm.appsAppcats().size(), std::size_t{ 2 });
    }

    void theRefreshFollowsTheFlags_data()
    {
        QTest::addColumn<json>("flags");
        QTest::addColumn<Ids>("refetched");
        QTest::addColumn<bool>("indexRebuilt");
        QTest::newRow("none") << test::modifiedFlags(false, false, false, false) << Ids{} << false;
        QTest::newRow("app folder")
            << test::modifiedFlags(true, false, false, false)
            << Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }
            << true;
        QTest::newRow("categories") << test::modifiedFlags(false, false, true, false)
                                    << Ids{ "get-myapps-menu-data" } << true;
        QTest::newRow("pins") << test::modifiedFlags(false, false, false, true)
                              << Ids{ "get-allapps-menu-data",
                                      "get-myapps-menu-data",
                                      "get-recentapps-menu-data" }
                              << false;
        QTest::newRow("recent") << test::modifiedFlags(false, true, false, false)
                                << Ids{ "get-recentapps-menu-data" } << false;
        QTest::newRow("pins and recent")
            << test::modifiedFlags(false, true, false, true)
            << Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }
            << false;
        QTest::newRow("app folder overrides categories")
            << test::modifiedFlags(true, false, true, false)
            << Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }
            << true;
    }

    void theRefreshFollowsTheFlags()
    {
        QFETCH(json, flags);
        QFETCH(Ids, refetched);
        QFETCH(bool, indexRebuilt);
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        serveSmallMenus(server);
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        server.queueReply("get-menu-data-modified-status", Reply::json(flags));
        QSignalSpy indexChanges(&vm, &PomvarViewModel::appsAppcatsChanged);
        QSignalSpy allAppsReset(&vm.allAppsMenuData(), &QAbstractItemModel::modelReset);
        vm.updateMenu();
        QCOMPARE(menuFetches(server), refetched);
        QCOMPARE(indexChanges.count() > 0, indexRebuilt);
        QCOMPARE(allAppsReset.count() > 0,
                 std::find(refetched.begin(), refetched.end(), "get-allapps-menu-data") !=
                     refetched.end());
        // Whatever was refetched, the lists are whole again.
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QCOMPARE(vm.myAppsTreeData().size(), std::size_t{ 2 });
        QCOMPARE(vm.recentAppsMenuData().size(), std::size_t{ 1 });
        QCOMPARE(vm.appsAppcats().at("app0001.desktop"), std::set<std::string>{ "Work" });
    }

    void theFirstOpeningReadsTheStatusTwice()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        serveSmallMenus(server); // empty lists would be fetched again at every opening
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        server.queueReply("get-app-status",
                          Reply::json({ { "ready", false }, { "updateFinished", false } }));
        QSignalSpy readiness(&vm, &PomvarViewModel::isReadyChanged);
        vm.updateMenu();
        QCOMPARE(server.requestIds(),
                 (Ids{ "get-app-status",
                       "get-menu-data-modified-status",
                       "get-app-status",
                       "get-user-prefs",
                       "check-update-available" }));
        QCOMPARE(readiness.count(), 2);
        QVERIFY(vm.isLoadedOnStartup());
        QVERIFY(vm.isReady());
        server.clearRequests();
        vm.updateMenu(); // later openings: four exchanges
        QCOMPARE(server.requestIds(),
                 (Ids{ "get-menu-data-modified-status",
                       "get-app-status",
                       "get-user-prefs",
                       "check-update-available" }));
    }

    void aFailedFetchEndsTheBuildAndIsRetriedAtTheNextOpening()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        serveSmallMenus(server);
        server.queueReply("check-update-available", Reply::json({ { "isUpdateAvailable", true } }));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QVERIFY(vm.isUpdateAvailable());

        // All Apps fails while every list is empty: nothing else is fetched, the flag is kept.
        server.queueReply("get-menu-data-modified-status",
                          Reply::json(test::modifiedFlags(true, false, false, false)));
        server.queueReply("get-allapps-menu-data", Reply::text("not json"));
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(menuFetches(server), Ids{ "get-allapps-menu-data" });
        QVERIFY(vm.allAppsMenuData().isEmpty() && vm.myAppsTreeData().isEmpty());
        QVERIFY(vm.isUpdateAvailable());
        QCOMPARE(server.requestIds().back(), std::string("get-allapps-menu-data"));

        // Next opening, no flag: the empty lists are fetched again.
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(
            menuFetches(server),
            (Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }));
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QVERIFY(!vm.isUpdateAvailable());
    }

    void anIncompleteUpdateAnswerCountsAsNoUpdate()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("check-update-available", Reply::json(json::object()));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QVERIFY(!vm.isUpdateAvailable());
        QCOMPARE(vm.checkUpdateAvailable(), std::optional<bool>(false));
    }

    void togglingACategoryReturnsTheServersAnswer()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", false } }));
        QVERIFY(!vm.toggleSetAppCategory("a\"b", "Games"));
        QVERIFY(vm.toggleSetAppCategory("k", "Work"));
        QCOMPARE(server.requests()[0],
                 std::string("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": "
                             "\"a\"b\",\n    \"appcat\": \"Games\"\n }   "));
    }
};

QTEST_GUILESS_MAIN(TestViewModelBuild)
#include "tst_viewmodelbuild.moc"

#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
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
    test::FakeMenus menus;
    menus.addApps(2, "/i/24.png", "/i/48.png");
    menus.pin("app1");
    menus.addCategory("Work", { "app2" });
    menus.addRecent("app2");
    menus.install(server);
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
        QTest::newRow("none") << test::FakeMenus::modified() << Ids{} << false;
        QTest::newRow("app folder")
            << test::FakeMenus::modified("appFolderModified")
            << Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }
            << true;
        QTest::newRow("categories") << test::FakeMenus::modified("appcatsModified")
                                    << Ids{ "get-myapps-menu-data" } << true;
        QTest::newRow("pins") << test::FakeMenus::modified("pinnedAppsModified")
                              << Ids{ "get-allapps-menu-data",
                                      "get-myapps-menu-data",
                                      "get-recentapps-menu-data" }
                              << false;
        QTest::newRow("recent") << test::FakeMenus::modified("recentAppsModified")
                                << Ids{ "get-recentapps-menu-data" } << false;
        QTest::newRow("pins and recent")
            << test::FakeMenus::modified("recentAppsModified", "pinnedAppsModified")
            << Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }
            << false;
        QTest::newRow("app folder overrides categories")
            << test::FakeMenus::modified("appFolderModified", "appcatsModified")
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
        QCOMPARE(vm.appsAppcats().at("app2"), std::set<std::string>{ "Work" });
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
                          Reply::json(test::FakeMenus::modified("appFolderModified")));
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

    void actionsReturnTheServersAnswer()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("check-update-available", Reply::json(json::object()));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        // An incomplete update answer counts as no update.
        QVERIFY(!vm.isUpdateAvailable());
        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", false } }));
        QVERIFY(!vm.toggleSetAppCategory("a\"b", "Games"));
        QVERIFY(vm.toggleSetAppCategory("k", "Work"));
    }
};

QTEST_GUILESS_MAIN(TestViewModelBuild)
#include "tst_viewmodelbuild.moc"

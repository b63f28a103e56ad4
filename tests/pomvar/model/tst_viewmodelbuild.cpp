#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "model/PomvarViewModel.h"

#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using test::FakeMenus;
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
    FakeMenus menus;
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
    void theRefreshFollowsTheFlags_data()
    {
        QTest::addColumn<json>("flags");
        QTest::addColumn<Ids>("refetched");
        QTest::addColumn<bool>("indexRebuilt");
        const Ids all = { "get-allapps-menu-data",
                          "get-myapps-menu-data",
                          "get-recentapps-menu-data" };
        QTest::newRow("none") << FakeMenus::modified() << Ids{} << false;
        QTest::newRow("app folder") << FakeMenus::modified("appFolderModified") << all << true;
        QTest::newRow("categories")
            << FakeMenus::modified("appcatsModified") << Ids{ all[1] } << true;
        QTest::newRow("pins") << FakeMenus::modified("pinnedAppsModified") << all << false;
        QTest::newRow("recent") << FakeMenus::modified("recentAppsModified") << Ids{ all[2] }
                                << false;
    }

    void theRefreshFollowsTheFlags()
    {
        QFETCH(json, flags);
        QFETCH(Ids, refetched);
        QFETCH(bool, indexRebuilt);
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        serveSmallMenus(server);
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() }); // the first build
        QVERIFY(vm.isReady() && vm.prefs());
        server.clearRequests();
        server.queueReply("get-menu-data-modified-status", Reply::json(flags));
        QSignalSpy indexChanges(&vm, &PomvarViewModel::appsAppcatsChanged);
        vm.updateMenu();
        // The first opening reads the status before the flags too; a build asks in this order.
        Ids expected = {
            "get-app-status", "get-menu-data-modified-status", "get-app-status", "get-user-prefs"
        };
        expected.insert(expected.end(), refetched.begin(), refetched.end());
        expected.push_back("check-update-available");
        QCOMPARE(server.requestIds(), expected);
        QVERIFY(vm.isLoadedOnStartup());
        QCOMPARE(indexChanges.count() > 0, indexRebuilt);
        // Whatever was refetched, the lists are whole again.
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QCOMPARE(vm.myAppsTreeData().size(), std::size_t{ 2 });
        QCOMPARE(vm.recentAppsMenuData().size(), std::size_t{ 1 });
        QCOMPARE(vm.appsAppcats(),
                 (PomvarViewModel::AppCategories{ { "app1", {} }, { "app2", { "Work" } } }));
        server.clearRequests();
        vm.updateMenu(); // later openings start with the flags
        QCOMPARE(server.requestIds().front(), std::string("get-menu-data-modified-status"));
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
                          Reply::json(FakeMenus::modified("appFolderModified")));
        server.queueReply("get-allapps-menu-data", Reply::text("not json"));
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(menuFetches(server), Ids{ "get-allapps-menu-data" });
        QVERIFY(vm.allAppsMenuData().isEmpty() && vm.myAppsTreeData().isEmpty());
        QVERIFY(vm.isUpdateAvailable());

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

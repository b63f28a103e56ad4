// The view model against a fake runtime server: what a build fetches and in what order, a failed
// fetch, the actions' answers and the update poll. The post-update notice is e2e_update's.
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"

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

Reply status(const char* text)
{
    return Reply::json({ { "status", text } });
}

std::size_t countOf(const FakeRuntimeServer& server, const std::string& id)
{
    const auto ids = server.requestIds();
    return static_cast<std::size_t>(std::count(ids.begin(), ids.end(), id));
}

} // namespace

class TestViewModel : public QObject
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

        // Next opening, no flag: the empty lists are fetched again. An incomplete update answer
        // counts as no update.
        server.queueReply("check-update-available", Reply::json(json::object()));
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(
            menuFetches(server),
            (Ids{ "get-allapps-menu-data", "get-myapps-menu-data", "get-recentapps-menu-data" }));
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QVERIFY(!vm.isUpdateAvailable());
        // The actions return the server's answer.
        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", false } }));
        QVERIFY(!vm.toggleSetAppCategory("a\"b", "Games"));
        QVERIFY(vm.toggleSetAppCategory("k", "Work"));
    }

    void everyStartPollsAfreshUntilEachPollSeesAFinalStatus()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.setDefaultReply("get-app-update-status", status("checking"));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        QVERIFY(!vm.appUpdateStatusTimer());
        vm.openOrganizer(OrganizerDlgMode::organizeApp, "a");
        QPointer<QTimer> first = vm.appUpdateStatusTimer();
        QVERIFY(first && first->isActive());
        QCOMPARE(first->interval(), 1000);
        vm.checkUpdates();
        QPointer<QTimer> second = vm.appUpdateStatusTimer();
        QVERIFY(second && second != first);
        vm.settings();
        QVERIFY(server.waitForRequests(3));
        QCOMPARE(server.requests()[0], request::organizer(OrganizerDlgMode::organizeApp, "a"));
        QCOMPARE(server.requests()[1], request::plain(request::checkUpdates));
        QCOMPARE(server.requests()[2], request::organizer(OrganizerDlgMode::settings, ""));
        // The first poll is replaced, not stopped: both ask until each sees a final answer.
        QTRY_VERIFY_WITH_TIMEOUT(countOf(server, "get-app-update-status") >= 3, 5000);
        QVERIFY(first->isActive() && second->isActive());
        for (int poll = 0; poll < 3; ++poll)
            server.queueReply("get-app-update-status", status("noUpdate"));
        QTRY_VERIFY_WITH_TIMEOUT(!first && !second, 5000);

        // Ready to install ends the program on the third tick; the status's case matters.
        server.queueReply("get-app-update-status", status("downloading"));
        server.queueReply("get-app-update-status", status("NoUpdate"));
        server.queueReply("get-app-update-status", status("readyToInstall"));
        int terminations = 0;
        vm.setTerminateApplication([&] { ++terminations; });
        server.clearRequests();
        vm.checkUpdates();
        QPointer<QTimer> poll = vm.appUpdateStatusTimer();
        QTRY_COMPARE_WITH_TIMEOUT(terminations, 1, 10000);
        QCOMPARE(countOf(server, "get-app-update-status"), std::size_t{ 3 });
        QTRY_VERIFY(!poll); // stopped and released
    }
};

QTEST_GUILESS_MAIN(TestViewModel)
#include "tst_viewmodel.moc"

#include "FakeRuntimeServer.h"
#include "ipc/RequestText.h"
#include "ipc/RuntimeConnection.h"
#include "ipc/RuntimeLink.h"
#include "model/PomvarViewModel.h"

#include <QSignalSpy>
#include <QTest>

#include <future>

using namespace pomvar;
using test::FakeRuntimeServer;

namespace {

PomvarRT endpointOf(const FakeRuntimeServer& server)
{
    return PomvarRT{ "localhost", server.port() };
}

} // namespace

class TestRuntimeLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsMadeWhileConnectingArriveInOrderOnceServed()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listenHoldingConnections());
        RuntimeLink link(endpointOf(server));
        link.sendMessage(request::plain(request::about));
        link.sendMessage(request::launch("one"));
        link.sendMessage(request::plain(request::checkUpdates));
        QTest::qWait(200);
        QCOMPARE(server.requests().size(), std::size_t{ 0 });
        server.release();
        QVERIFY(server.waitForRequests(3, 10000));
        const std::vector<std::string> expected = { request::plain(request::about),
                                                    request::launch("one"),
                                                    request::plain(request::checkUpdates) };
        QCOMPARE(server.requests(), expected);
    }

    void writesQueuedBeforeStartAreFlushedOnConnect()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeConnection connection("localhost", server.port(), "test queue");
        std::promise<std::error_code> firstDone;
        connection.send({ { std::string("\x00\x02{}", 4),
                            [&](std::error_code error) { firstDone.set_value(error); } } });
        connection.send({ { std::string("\x00\x01", 2), {} }, { std::string("x"), {} } });
        connection.start();
        QVERIFY(server.waitForRequests(2));
        QCOMPARE(server.requests(), (std::vector<std::string>{ "{}", "x" }));
        auto done = firstDone.get_future();
        connection.post([] {}); // completions of written chunks run at the queue's next turn
        QCOMPARE(done.wait_for(std::chrono::seconds(5)), std::future_status::ready);
        QVERIFY(!done.get());
    }

    void awaitedRepliesComeBackWhole()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(endpointOf(server));

        server.queueReply("get-app-status", FakeRuntimeServer::Reply::text("hello"));
        QCOMPARE(link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)),
                 std::optional<std::string>("hello"));

        // 8 MiB in writes of 1,000 bytes each.
        std::string big = "[\"";
        big.append(8 * 1024 * 1024 - 4, 'z');
        big.append("\"]");
        server.queueReply("get-allapps-menu-data", FakeRuntimeServer::Reply::text(big).split(1000));
        const auto reply =
            link.sendMessageAndAwaitResponse(request::plain(request::getAllAppsMenuData));
        QVERIFY(reply && reply->is_array());
        QCOMPARE((*reply)[0].get<std::string>().size(), big.size() - 4);

        const std::string multiByte = "{\"name\": \"Ünïcödé 😀\"}";
        server.queueReply("get-recentapps-menu-data",
                          FakeRuntimeServer::Reply::text(multiByte).split(1));
        QCOMPARE(
            link.sendMessageAndAwaitResponseData(request::plain(request::getRecentAppsMenuData)),
            std::optional<std::string>(multiByte));

        // Not UTF-8, or not JSON: no reply.
        server.queueReply("check-update-available", FakeRuntimeServer::Reply::text("\xff\xfe"));
        QVERIFY(
            !link.sendMessageAndAwaitResponseData(request::plain(request::checkUpdateAvailable)));
        server.queueReply("check-update-available", FakeRuntimeServer::Reply::text("{nope"));
        QVERIFY(!link.sendMessageAndAwaitResponse(request::plain(request::checkUpdateAvailable)));
    }

    void requestsAtTheFrameLimitGoOut()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(endpointOf(server));
        const std::string largest(65535, 'x');
        link.sendMessage(largest);
        QVERIFY(server.waitForRequests(1));
        QCOMPARE(server.requests().front(), largest);
    }

    void aStrayReplyShiftsTheNextAwaitedOne()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(endpointOf(server));
        server.queueReply("launch", FakeRuntimeServer::Reply::text("{\"stray\": true}"));
        link.sendMessage(request::launch("k"));
        const auto reply =
            link.sendMessageAndAwaitResponse(request::plain(request::checkUpdateAvailable));
        QVERIFY(reply);
        QVERIFY(reply->contains("stray"));
        // The real answer is now read by the next awaited request.
        const auto next =
            link.sendMessageAndAwaitResponse(request::plain(request::checkUpdateAvailable));
        QVERIFY(next && next->contains("isUpdateAvailable"));
    }

    void typedRecordsDecodeAndIgnoreExtraKeys()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(endpointOf(server));
        server.queueReply("get-user-prefs",
                          FakeRuntimeServer::Reply::json({ { "MenuDensity", 1 },
                                                           { "AnimationFx", false },
                                                           { "SaveExpAppCats", true },
                                                           { "SaveLastMenu", false },
                                                           { "OneExpAppCat", true },
                                                           { "Extra", "ignored" } }));
        const UserPrefs prefs = link.getUserPrefs();
        QCOMPARE(prefs.menuDensity, 1);
        QVERIFY(!prefs.animationFx && prefs.saveExpAppCats && !prefs.saveLastMenu &&
                prefs.oneExpAppCat);
        server.queueReply("get-menu-data-modified-status",
                          FakeRuntimeServer::Reply::json({ { "appFolderModified", false },
                                                           { "recentAppsModified", true },
                                                           { "appcatsModified", false },
                                                           { "pinnedAppsModified", true },
                                                           { "more", { 1, 2 } } }));
        const MenuDataStatus status = link.getMenuDataModifiedStatus();
        QVERIFY(!status.appFolderModified && status.recentAppsModified && !status.appcatsModified &&
                status.pinnedAppsModified);
        QVERIFY(link.getAppStatus().ready);
    }

    void aClosedConnectionReleasesTheCallerWithNoReply()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(endpointOf(server));
        server.queueReply("get-app-status", FakeRuntimeServer::Reply::close());
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
    }

    void organizerAndUpdateChecksStartAFreshPollEachTime()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.setDefaultReply("get-app-update-status",
                               FakeRuntimeServer::Reply::json({ { "status", "downloading" } }));
        PomvarViewModel vm(endpointOf(server));
        server.clearRequests(); // the first build's exchanges
        QVERIFY(!vm.appUpdateStatusTimer());
        vm.openOrganizer(OrganizerDlgMode::organizeApp, "a");
        QPointer<QTimer> first = vm.appUpdateStatusTimer();
        QVERIFY(first && first->isActive());
        QCOMPARE(first->interval(), 1000);
        vm.checkUpdates();
        QPointer<QTimer> second = vm.appUpdateStatusTimer();
        QVERIFY(second && second != first);
        QVERIFY(first && first->isActive()); // replaced, not stopped
        vm.settings();
        QVERIFY(server.waitForRequests(3));
        QCOMPARE(server.requests()[0], request::organizer(OrganizerDlgMode::organizeApp, "a"));
        QCOMPARE(server.requests()[1], request::plain(request::checkUpdates));
        QCOMPARE(server.requests()[2], request::organizer(OrganizerDlgMode::settings, ""));
    }
};

QTEST_GUILESS_MAIN(TestRuntimeLink)
#include "tst_runtimelink.moc"

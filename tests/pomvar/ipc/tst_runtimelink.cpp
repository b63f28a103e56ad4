// The front end's connection to the runtime server: replies whole whatever their chunking and
// size, replies matched by order alone, a connection the server closes, and the typed records.
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "ipc/JsonDocument.h"
#include "ipc/RuntimeLink.h"
#include "wire/Protocol.h"

#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;

class TestRuntimeLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void awaitedRepliesComeBackWholeAndInOrder()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(PomvarRT{ "localhost", server.port() });
        // 8 MiB in writes of 1,000 bytes each.
        std::string big = "[\"";
        big.append(8 * 1024 * 1024 - 4, 'z');
        big.append("\"]");
        server.queueReply("get-allapps-menu-data", Reply::text(big).split(1000));
        const auto reply =
            link.sendMessageAndAwaitResponse(request::plain(request::getAllAppsMenuData));
        QVERIFY(reply);
        QCOMPARE(reply->root().at(0).get_string().value(),
                 std::string_view(big).substr(2, big.size() - 4));
        // The next large reply is read into the buffer of the last: none of it may show.
        const std::string smaller = "[\"" + std::string(100000, 'y') + "\"]";
        server.queueReply("get-allapps-menu-data", Reply::text(smaller).split(4096));
        QCOMPARE(link.sendMessageAndAwaitResponseData(request::plain(request::getAllAppsMenuData)),
                 std::optional<std::string>(smaller));
        const std::string multiByte = "{\"name\": \"Ünïcödé 😀\"}";
        server.queueReply("get-recentapps-menu-data", Reply::text(multiByte).split(1));
        QCOMPARE(
            link.sendMessageAndAwaitResponseData(request::plain(request::getRecentAppsMenuData)),
            std::optional<std::string>(multiByte));
        // Not UTF-8: no reply.
        server.queueReply("check-update-available", Reply::text("\xff\xfe"));
        QVERIFY(
            !link.sendMessageAndAwaitResponseData(request::plain(request::checkUpdateAvailable)));
        // Replies are matched by order alone: a stray one is read by the next awaited request,
        // and the real answer by the one after.
        server.queueReply("launch", Reply::text("{\"stray\": true}"));
        link.sendMessage(request::launch("k"));
        const auto hasKey = [&](const char* key) {
            const auto next =
                link.sendMessageAndAwaitResponse(request::plain(request::checkUpdateAvailable));
            return next && next->root().at_key(key).error() == simdjson::SUCCESS;
        };
        QVERIFY(hasKey("stray"));
        QVERIFY(hasKey("isUpdateAvailable"));
        // The server closes the connection after the answer still due: no reply ever after.
        server.queueReply("get-app-status", Reply::close());
        QVERIFY(link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
    }

    void typedRecordsDecodeAndIgnoreExtraKeys()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        RuntimeLink link(PomvarRT{ "localhost", server.port() });
        nlohmann::json prefs = test::FakeMenus::prefs(1, false, true, true, false);
        prefs["Extra"] = "ignored";
        server.queueReply("get-user-prefs", Reply::json(prefs));
        const UserPrefs read = link.getUserPrefs();
        QVERIFY(read.menuDensity == 1 && !read.animationFx && read.saveExpAppCats &&
                !read.saveLastMenu && read.oneExpAppCat);
        server.queueReply("get-app-status",
                          Reply::json({ { "ready", false }, { "updateFinished", true } }));
        const AppStatus app = link.getAppStatus();
        QVERIFY(!app.ready && app.updateFinished);
    }
};

QTEST_GUILESS_MAIN(TestRuntimeLink)
#include "tst_runtimelink.moc"

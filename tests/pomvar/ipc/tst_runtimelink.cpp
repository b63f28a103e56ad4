// The front end's connection to the runtime server: replies whole whatever their chunking and
// size, replies matched by order alone, a connection the server closes, and the typed records.
// A broken server contract stops the front end, naming the fault: records with a missing or
// mistyped field, menu data that does not hold together, an oversized request, a port out of
// range. A refused connection ends it with status 1; a zero-length reply leaves it waiting.
#include "ChildProcess.h"
#include "FakeMenus.h"
#include "ipc/JsonDocument.h"
#include "ipc/RuntimeLink.h"
#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"

#include <QSettings>
#include <QTcpServer>
#include <QTest>

#include <array>

using namespace pomvar;
using namespace pomvar::test;
using Reply = FakeRuntimeServer::Reply;

namespace {

// This program again, in a process of its own for the cases that end the process or never let it
// end: a build with the server at <port>, then the exchange whose request is <id> ("" an
// oversized request instead).
ChildOutcome runDriver(int port, const std::string& id, int waitMs = 15000)
{
    return runChild(QCoreApplication::applicationFilePath(),
                    { "--drive", QString::number(port), QString::fromStdString(id) },
                    waitMs);
}

int drive(int port, const std::string& id)
{
    const PomvarRT server{ "localhost", port };
    if (id.empty()) {
        RuntimeLink(server).sendMessage(std::string(65536, ' '));
        return 0;
    }
    PomvarViewModel vm(server);
    if (id == "toggle-set-appcat")
        vm.toggleSetAppCategory("k", "c");
    if (id != "get-app-update-status")
        return 0;
    vm.setTerminateApplication([] { QCoreApplication::exit(0); });
    vm.checkUpdates();
    return QCoreApplication::exec();
}

} // namespace

class TestRuntimeLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void awaitedRepliesComeBackWholeInOrderAndTyped()
    {
        FakeRuntimeServer server;
        RuntimeLink link(PomvarRT{ "localhost", server.port() });
        // 8 MiB in writes of 1,000 bytes each.
        const std::string big = "[\"" + std::string(8 * 1024 * 1024 - 4, 'z') + "\"]";
        server.queueReply("get-allapps-menu-data", Reply::text(big).split(1000));
        const auto reply =
            link.sendMessageAndAwaitResponse(request::plain(request::getAllAppsMenuData));
        QVERIFY(reply);
        QCOMPARE(reply->root().at(0).get_string().value(),
                 std::string_view(big).substr(2, big.size() - 4));
        // The next large reply is read into the buffer of the last: none of it may show. Not
        // UTF-8: no reply.
        const std::pair<std::string, std::size_t> replies[] = {
            { "[\"" + std::string(100000, 'y') + "\"]", 4096 },
            { "{\"name\": \"Ünïcödé 😀\"}", 1 },
            { "\xff\xfe", 0 },
        };
        for (const auto& [body, chunk] : replies) {
            server.queueReply("get-recentapps-menu-data", Reply::text(body).split(chunk));
            QCOMPARE(link.sendMessageAndAwaitResponseData(
                         request::plain(request::getRecentAppsMenuData)),
                     chunk ? std::optional(body) : std::nullopt);
        }
        // The typed records, their extra keys ignored.
        nlohmann::json prefs = FakeMenus::prefs(1, false, true, true, false);
        prefs["Extra"] = "ignored";
        server.queueReply("get-user-prefs", Reply::json(prefs));
        const UserPrefs read = link.getUserPrefs();
        QVERIFY(read.menuDensity == 1 && !read.animationFx && read.saveExpAppCats &&
                !read.saveLastMenu && read.oneExpAppCat);
        server.queueReply("get-app-status",
                          Reply::json({ { "ready", false }, { "updateFinished", true } }));
        const AppStatus app = link.getAppStatus();
        QVERIFY(!app.ready && app.updateFinished);
        // Replies are matched by order alone: a stray one is read by the next awaited request,
        // and the real answer by the one after.
        server.queueReply("launch", Reply::text("{\"stray\": true}"));
        link.sendMessage(request::launch("k"));
        const std::string check = request::plain(request::checkUpdateAvailable);
        for (const char* key : { "\"stray\"", "\"isUpdateAvailable\"" })
            QVERIFY(link.sendMessageAndAwaitResponseData(check).value_or("").find(key) !=
                    std::string::npos);
        // The server closes the connection after the answer still due: no reply ever after.
        server.queueReply("get-app-status", Reply::close());
        QVERIFY(link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
        QVERIFY(!link.sendMessageAndAwaitResponseData(request::plain(request::getAppStatus)));
    }

    void brokenRepliesAndConnectionsEndTheProcess()
    {
        const auto prefs = [](const char* key, const nlohmann::json& value) {
            nlohmann::json changed = FakeMenus::prefs(0, true, false);
            changed[key] = value;
            return changed.dump();
        };
        // The request answered ("" an oversized request), its reply (empty: the server closes
        // the connection), and the fault the message must name.
        const std::array<std::string, 3> rows[] = {
            { "get-user-prefs", prefs("MenuDensity", 1.5), "non-integral number" },
            { "get-user-prefs", prefs("AnimationFx", 1), "\"AnimationFx\" must be" },
            { "get-user-prefs", "", "no reply to 'get-user-prefs'" },
            { "get-app-status", R"({"ready": true})", "\"updateFinished\" is" },
            { "get-app-status", "[true, false]", "not an object" },
            { "get-app-status", "ready", "not JSON" },
            { "", "", "65536" },
            { "check-update-available", "{", "no reply to 'check-update-available'" },
            { "toggle-set-appcat", "{}", "\"isset\"" },
            { "get-app-update-status", "{}", "\"status\"" },
            { "get-myapps-menu-data", R"({"appcats": ["Ghost"]})", "\"Ghost\"" },
            // A member All Apps (empty) does not list.
            { "get-myapps-menu-data",
              R"({"appcats": ["W"], "appcatapps": {"W": [{"appkey": "x"}]}})",
              "\"x\", which" },
            { "get-myapps-menu-data", R"({"renamedAppcats": [{"old": 1}]})", "\"new\":" },
        };
        // A saved expansion map makes the rename list count.
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar")
            .setValue("ExpandedAppCats", QVariantMap{ { "W", true } });
        for (const auto& [id, reply, fault] : rows) {
            FakeRuntimeServer server;
            server.setDefaultReply(id, reply.empty() ? Reply::close() : Reply::text(reply));
            const ChildOutcome outcome = runDriver(server.port(), id);
            QVERIFY2(outcome.crashed() && outcome.err.contains(fault), fault.c_str());
        }
        // A refused connection ends with status 1; a port out of range stops before connecting;
        // a zero-length reply leaves the caller waiting.
        quint16 closed = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            closed = probe.serverPort();
        }
        QVERIFY(runDriver(closed, "get-app-status").exitedWith(1));
        const ChildOutcome outOfRange = runDriver(70000, "get-app-status");
        QVERIFY2(outOfRange.crashed() && outOfRange.err.contains("invalid port 70000"),
                 outOfRange.err.constData());
        FakeRuntimeServer server;
        server.queueReply("get-app-status", Reply::text(""));
        QVERIFY(!runDriver(server.port(), "get-app-status", 1500).finished);
    }
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 4 && std::string_view(argv[1]) == "--drive")
        return drive(std::stoi(argv[2]), argv[3]);
    TestRuntimeLink test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_runtimelink.moc"

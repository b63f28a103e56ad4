// The real server over TCP: launching real programs (a D-Bus-activatable one over a private
// session bus), the search shortcut, a second server on the same port, the store on disk when the
// server is killed during a burst of changes. What each request does, and what an unreadable store
// becomes, are tst_servermodel's; what the server refuses, tst_hostile's.
#include "ServerProcess.h"
#include "SessionBus.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/model/Store.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <thread>

using namespace pomvar::test;
using Json = nlohmann::json;
namespace rq = pomvar::request;

class TestProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString root = m_desktop.root(), system = m_desktop.systemData();
        m_script = root + "/bin/write-marker";
        // Notes its arguments and whether the server's port setting leaked into its environment.
        QVERIFY(TestDesktop::write(
            m_script, "#!/bin/sh\necho \"$* ${POMVARSRV_PORT:-unset}\" > \"$0.$1\"\n", true));
        // GIO lists only entries whose program exists: soon-gone is removed once the server runs.
        QVERIFY(TestDesktop::write(root + "/bin/soon-gone", "#!/bin/sh\n", true));
        const std::pair<const char*, QString> entries[] = {
            { "alpha", "Exec=true" },
            { "marker", "Exec=" + m_script + " direct" },
            { "broken", "Exec=" + root + "/bin/soon-gone" },
            { "org.example.Activated", "DBusActivatable=true\nExec=" + m_script + " exec" },
        };
        for (const auto& [name, lines] : entries)
            QVERIFY(TestDesktop::writeEntry(system,
                                            name + QStringLiteral(".desktop"),
                                            "Name=" + QByteArray(name) + "\n" + lines.toUtf8()));
        QVERIFY(TestDesktop::write(m_desktop.storePath(),
                                   R"({"version": 1, "recent": ["alpha.desktop"]})"));
        m_server = std::make_unique<ServerProcess>(m_desktop);
        QVERIFY(m_server->start());
        QVERIFY(QFile::remove(root + "/bin/soon-gone"));
    }

    void launch()
    {
        for (const auto& [appkey, launched] :
             { std::pair("marker.desktop", true), { "broken.desktop", false } }) {
            SrvClient client;
            QVERIFY(client.connectTo(m_server->port()));
            client.json(rq::plain(rq::getMenuDataModifiedStatus));
            QVERIFY(client.send(rq::launch(appkey)));
            // The launch is done when the next request is answered; the app runs on its own.
            const Json flags = client.json(rq::plain(rq::getMenuDataModifiedStatus));
            const Json recent = client.json(rq::plain(rq::getRecentAppsMenuData));
            JCOMPARE(flags["recentAppsModified"], launched);
            QCOMPARE(recent[0]["appkey"] == appkey, launched);
        }
        // Its arguments, and not the server's port setting.
        QTRY_VERIFY_WITH_TIMEOUT(TestDesktop::read(m_script + ".direct").contains("direct unset"),
                                 20000);
    }

    void aDBusActivatableAppIsActivatedOverTheBus()
    {
        // A private session bus whose activatable service is ours: it runs the marker script.
        QVERIFY(TestDesktop::write(
            m_desktop.dataHome() + "/dbus-1/services/org.example.Activated.service",
            "[D-BUS Service]\nName=org.example.Activated\nExec=" + m_script.toUtf8() + " dbus\n"));
        SessionBus bus;
        QVERIFY(bus.start(m_desktop.environment(0)));
        QProcessEnvironment withBus;
        withBus.insert("DBUS_SESSION_BUS_ADDRESS", bus.address());
        ServerProcess server(m_desktop, withBus);
        QVERIFY(server.start());
        SrvClient client;
        QVERIFY(client.connectTo(server.port()) &&
                client.send(rq::launch("org.example.Activated.desktop")));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_script + ".dbus"), 20000);
        QVERIFY(!QFile::exists(m_script + ".exec")); // not through its Exec line
    }

    void theSearchShortcutAsksTheRunningServer()
    {
        // Against the running server, then where nothing listens.
        for (const quint16 port : { m_server->port(), ServerProcess::freePort() }) {
            QProcess shortcut;
            shortcut.setProcessEnvironment(m_desktop.environment(port));
            shortcut.start(qEnvironmentVariable("POMVAR_LIBEXEC_DIR") + "/pomvarsrv",
                           { "--search" });
            QVERIFY(shortcut.waitForFinished(20000));
            const bool running = port == m_server->port();
            QCOMPARE(shortcut.exitCode(), running ? 0 : 1);
            QCOMPARE(shortcut.readAllStandardError().contains("Pomvar is not running"), !running);
        }
        // That it opens the search window: a11y_search.
    }

    void secondServerOnTheSamePortLeaves()
    {
        const QByteArray storeBefore = TestDesktop::read(m_desktop.storePath());
        ServerProcess second(m_desktop);
        QCOMPARE(second.runToExit(m_server->port(), { "--clear-recent", "--refresh" }), 0);
        // The running server's store and icons are not the leaving one's to touch.
        QCOMPARE(TestDesktop::read(m_desktop.storePath()), storeBefore);
        QVERIFY(!QDir(m_desktop.iconCache()).isEmpty());
        SrvClient client;
        QVERIFY(client.connectTo(m_server->port()));
        QVERIFY(!client.json(rq::plain(rq::getRecentAppsMenuData)).empty());
    }

    // SIGKILL at random moments of a burst of changes leaves a store that loads and holds the
    // state before or after the change in flight.
    void killedDuringABurstOfChanges()
    {
        constexpr int kApps = 10, kKills = 4;
        TestDesktop desktop;
        for (int i = 0; i < kApps; ++i)
            QVERIFY(TestDesktop::writeEntry(desktop.systemData(),
                                            QStringLiteral("app%1.desktop").arg(i),
                                            "Name=App " + QByteArray::number(i) + "\nExec=true\n"));
        QVERIFY(TestDesktop::write(desktop.storePath(),
                                   R"({"version": 1, "categories": [{"name": "Burst"}]})"));
        // The members of "Burst" as stored; nothing when the store does not load.
        const auto stored = [&]() -> std::optional<std::vector<std::string>> {
            const auto store = pomvar::srv::Store::fromJson(nlohmann::json::parse(
                TestDesktop::read(desktop.storePath()).toStdString(), nullptr, false));
            const auto* category = store ? store->category("Burst") : nullptr;
            return category ? std::optional(category->apps) : std::nullopt;
        };
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("random seed %u", seed);
        QRandomGenerator random(seed);
        std::vector<std::string> confirmed;
        // Some 200 changes a round; each round but the last is killed during its last change.
        for (int round = 0; round <= kKills; ++round) {
            ServerProcess server(desktop);
            SrvClient client;
            QVERIFY(server.start() && client.connectTo(server.port()));
            for (int left = random.bounded(150, 250); left >= 0; --left) {
                const std::string app = "app" + std::to_string(random.bounded(kApps)) + ".desktop";
                auto next = confirmed;
                const auto it = std::find(next.begin(), next.end(), app);
                const bool set = it == next.end();
                set ? next.push_back(app) : void(next.erase(it));
                const std::string body = pomvar::request::toggleSetAppcat(app, "Burst");
                if (left > 0 || round == kKills) {
                    JCOMPARE(client.json(body)["isset"], set);
                    confirmed = std::move(next);
                    continue;
                }
                QVERIFY(client.send(body));
                // At a random point of its handling.
                std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000)));
                server.kill();
                const auto kept = stored();
                QVERIFY2(kept == confirmed || kept == next,
                         "the store is neither before nor after");
                confirmed = *kept;
            }
            if (round == kKills) {
                client.close();
                QCOMPARE(server.quit(), 0);
                QVERIFY(stored() == confirmed);
            }
        }
        // Interrupted writes leave no debris beside the store.
        QCOMPARE(QFileInfo(desktop.storePath()).dir().entryList(QDir::Files | QDir::Hidden),
                 QStringList{ QStringLiteral("pomvarsrv.json") });
    }

private:
    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
    QString m_script;
};

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"

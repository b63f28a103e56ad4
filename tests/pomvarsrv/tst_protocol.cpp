// The real server over TCP: launching real programs (a D-Bus-activatable one over a private
// session bus), the search shortcut, a second server on the same port. What each request does is
// tst_servermodel's; what the server refuses, tst_hostile's.
#include "ServerProcess.h"
#include "SessionBus.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QTest>

#include <unistd.h>

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
        QTRY_VERIFY(m_server->log().contains("app-search requested"));
    }

    void secondServerOnTheSamePortLeaves()
    {
        const QByteArray storeBefore = TestDesktop::read(m_desktop.storePath());
        ServerProcess second(m_desktop);
        QCOMPARE(second.runToExit(m_server->port(), { "--clear-recent", "--refresh" }), 0);
        QVERIFY2(second.log().contains("already in use"), qPrintable(second.log()));
        // The running server's store and icons are not the leaving one's to touch.
        QCOMPARE(TestDesktop::read(m_desktop.storePath()), storeBefore);
        QVERIFY(!QDir(m_desktop.iconCache()).isEmpty());
        SrvClient client;
        QVERIFY(client.connectTo(m_server->port()));
        QVERIFY(!client.json(rq::plain(rq::getRecentAppsMenuData)).empty());
    }

private:
    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
    QString m_script;
};

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"

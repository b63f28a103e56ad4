// The real server over TCP: web pages and malformed frames shut out, clients that stall or flood,
// only the server's own user served, launching real programs (a D-Bus-activatable one over a
// private session bus), a second server on the same port.
// What each request does is tst_servermodel's.
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

    void webPagesAndMalformedFramesAreShutOut()
    {
        SrvClient bystander, before;
        QVERIFY(bystander.connectTo(m_server->port()) && before.connectTo(m_server->port()));
        before.json(rq::plain(rq::getMenuDataModifiedStatus)); // clears the flags
        const QByteArray store = TestDesktop::read(m_desktop.storePath());
        // Frames that would pin, launch, answer and quit, had they been read.
        const auto frame = [](const std::string& body) {
            return *pomvar::wire::encodeRequestFrame(body);
        };
        const std::string frames = frame(rq::togglePinApp("alpha.desktop")) +
                                   frame(rq::launch("marker.desktop")) +
                                   frame(rq::plain(rq::getAppStatus)) + frame(rq::plain(rq::quit));
        // A browser's POST padded so that the frames start where "PO", read as a length, ends.
        std::string post = "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: text/plain\r\n\r\n";
        post.resize(2 + ('P' << 8 | 'O'), ' ');
        const std::string openings[] = {
            post + frames,
            "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" + frames,
            // Which bodies are refused is the parser's (tst_servermodel).
            frame("garbage") + frames,
            frame("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"al") + frames,
        };
        for (const std::string& opening : openings) {
            SrvClient client;
            QVERIFY(client.connectTo(m_server->port()));
            const quint16 port = client.localPort();
            client.sendRaw(opening); // may fail midway: the server hangs up
            QVERIFY(!client.readReply() && !client.isConnected());
            QCOMPARE(m_server->log().count(
                         QStringLiteral("closed the connection from port %1 ").arg(port)),
                     1);
        }
        // Nothing was acted on, and everyone else is still served.
        JCOMPARE(bystander.json(rq::plain(rq::getAppStatus))["ready"], true);
        const Json flags = before.json(rq::plain(rq::getMenuDataModifiedStatus));
        QVERIFY2(!flags["pinnedAppsModified"] && !flags["recentAppsModified"],
                 flags.dump().c_str());
        JCOMPARE(before.json(rq::plain(rq::getMyAppsMenuData))["pinnedapps"], Json::array());
        QCOMPARE(TestDesktop::read(m_desktop.storePath()), store);
        QVERIFY(!m_server->log().contains("launched"));
    }

    void stalledOrFloodingClientsBlockNoOne()
    {
        SrvClient stalled, flooding;
        QVERIFY(stalled.connectTo(m_server->port()));
        QVERIFY(stalled.sendRaw(std::string("\x00\x40{", 3)));
        QVERIFY(flooding.connectTo(m_server->port()));
        for (int i = 0; i < 300; ++i)
            QVERIFY(flooding.send(rq::plain(rq::getAllAppsMenuData)));
        for (const QString address : { "127.0.0.1", "::1" }) {
            SrvClient fresh;
            QVERIFY(fresh.connectTo(m_server->port(), address));
            JCOMPARE(fresh.json(rq::plain(rq::getAppStatus))["ready"], true);
        }
        // The flooding client gets every reply, in order, once it reads.
        for (int i = 0; i < 300; ++i)
            QVERIFY(Json::parse(flooding.readReply().value_or("null")).is_array());
    }

    void otherUsersAreRefused()
    {
        if (::getuid() != 0)
            QSKIP("needs root to run a client under another uid");
        // A shell client run as nobody prints what it reads back: nothing, as the server hangs up.
        const auto frame = *pomvar::wire::encodeRequestFrame(rq::plain(rq::getAppStatus));
        const QStringList nobody =
            QStringLiteral("20 setpriv --reuid=65534 --regid=65534 --clear-groups bash -c")
                .split(u' ');
        const QString script =
            QStringLiteral("exec 3<>/dev/tcp/127.0.0.1/%1 || exit 3\ncat >&3\nhead -c 4 <&3");
        QProcess client;
        client.start("timeout", nobody + QStringList{ script.arg(m_server->port()) });
        client.write(frame.data(), qint64(frame.size()));
        client.closeWriteChannel();
        // 124: timed out, the connection was left open; 3: no connection at all.
        QVERIFY(client.waitForFinished(30000) && !(QList{ 3, 124 }.contains(client.exitCode())));
        QCOMPARE(client.readAllStandardOutput(), QByteArray());
        QVERIFY(m_server->log().contains("owned by uid 65534"));
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
            QCOMPARE(m_server->log().contains(QStringLiteral("cannot launch ") + appkey),
                     !launched);
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

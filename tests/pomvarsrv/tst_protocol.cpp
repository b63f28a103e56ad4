// The real server over TCP: framing, damaged and truncated frames, clients that stall or flood,
// only the server's own user served, launching real programs, a second server on the same port.
// What each request does is tst_servermodel's.
#include "PeerCredentials.h"
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QTest>

#include <unistd.h>

using namespace pomvar::test;
using pomvar::srv::PeerCredentials;
using Json = nlohmann::json;
using Uid = std::optional<unsigned>;
namespace rq = pomvar::request;

class TestProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void damagedFramesAndUnansweredRequests();
    void stalledOrFloodingClientsBlockNoOne();
    void ownerFoundInTheKernelTable();
    void otherUsersAreRefused();
    void launch();
    void secondServerOnTheSamePortLeaves();

private:
    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
    QString m_script;
};

void TestProtocol::initTestCase()
{
    const QString root = m_desktop.root(), system = m_desktop.systemData();
    m_script = root + "/bin/write-marker";
    // Notes its arguments and whether the server's port setting leaked into its environment.
    QVERIFY(TestDesktop::write(
        m_script, "#!/bin/sh\necho \"$* ${POMVARSRV_PORT:-unset}\" > \"$0.$1\"\n", true));
    // Terminal=true: GIO runs the program in the first terminal it finds on PATH; stand-ins for
    // the ones it looks for note how they were called.
    for (const auto& terminal : QStringLiteral("gnome-terminal nxterm color-xterm rxvt dtterm "
                                               "xterm x-terminal-emulator")
                                    .split(u' '))
        QVERIFY(
            TestDesktop::write(root + "/fake-bin/" + terminal,
                               "#!/bin/sh\necho \"$0 $*\" > " + m_script.toUtf8() + ".terminal\n",
                               true));
    // GIO lists only entries whose program exists: soon-gone is removed once the server runs.
    QVERIFY(TestDesktop::write(root + "/bin/soon-gone", "#!/bin/sh\n", true));
    const std::pair<const char*, QString> entries[] = {
        { "alpha", "Exec=true" },
        { "marker", "Exec=" + m_script + " direct" },
        { "console", "Terminal=true\nExec=" + m_script + " console" },
        { "broken", "Exec=" + root + "/bin/soon-gone" },
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

void TestProtocol::damagedFramesAndUnansweredRequests()
{
    SrvClient client;
    QVERIFY(client.connectTo(m_server->port()));
    // None of these is answered: the first reply read must be the awaited request's.
    for (const std::string& body :
         { std::string(),
           std::string("garbage"),
           std::string("\xff\xfe\0\x01", 4),
           std::string(65535, '{'),
           std::string("{\n    \"id\": \"launch\",\n    \"appkey\": \"al"),
           std::string(R"({"id": "make-coffee"})"),
           rq::plain(rq::checkUpdates) })
        QVERIFY(client.send(body));
    // An awaited request cut short is still answered, so the front end stays in step.
    JCOMPARE(client.json("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"alp"),
             Json::parse(R"({"isset": false})"));
    // A frame written a byte at a time; then half a frame, and gone: the next client is served.
    const auto frame = *pomvar::wire::encodeRequestFrame(rq::plain(rq::getAppStatus));
    for (const char byte : frame)
        QVERIFY(client.sendRaw(std::string_view(&byte, 1)));
    JCOMPARE(Json::parse(client.readReply().value_or("null"))["ready"], true);
    QVERIFY(client.sendRaw(frame.substr(0, 10)));
    client.close();
    QVERIFY(client.connectTo(m_server->port()));
    JCOMPARE(client.json(rq::plain(rq::getAppStatus))["ready"], true);
    QVERIFY(m_server->log().contains(
        "pomvarsrv: warning: ignoring a request with the unknown id \"make-coffee\""));
}

void TestProtocol::stalledOrFloodingClientsBlockNoOne()
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

void TestProtocol::ownerFoundInTheKernelTable()
{
    // As /proc/net/tcp and tcp6 print them (addresses in the machine's word order): the server's
    // end of the connection, another client's, and the peer's, whose local end is our remote.
    const QByteArray table4 =
        "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid\n"
        "   0: 0100007F:C6E2 0100007F:D4A2 01 00000000:00000000 00:00000000 00000000  1000 0 1\n"
        "   1: 0100007F:AAAA 0100007F:C6E2 01 00000000:00000000 00:00000000 00000000  1000 0 2\n"
        "   2: 0100007F:D4A2 0100007F:C6E2 01 00000000:00000000 00:00000000 00000000 65534 0 3\n";
    const QHostAddress local(QStringLiteral("127.0.0.1"));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0xD4A2, local, 0xC6E2), Uid(65534));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0xC6E2, local, 0xD4A2), Uid(1000));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0x1234, local, 0xC6E2), Uid());
    const QByteArray table6 =
        "  sl  local_address                         remote_address                        st\n"
        "   0: 00000000000000000000000001000000:9C40 00000000000000000000000001000000:1F90 01 "
        "00000000:00000000 00:00000000 00000000     7        0 3 1\n";
    const QHostAddress loop6(QStringLiteral("::1"));
    QCOMPARE(PeerCredentials::ownerUidIn(table6, loop6, 0x9C40, loop6, 0x1F90), Uid(7));
}

void TestProtocol::otherUsersAreRefused()
{
    if (::getuid() != 0)
        QSKIP("needs root to run a client under another uid");
    // A shell client, as ourselves or as nobody, prints what it reads back: the 4-byte prefix of
    // the reply, or nothing when the server closes the connection.
    const auto frame = *pomvar::wire::encodeRequestFrame(rq::plain(rq::getAppStatus));
    for (const QString address : { "127.0.0.1", "::1" }) {
        for (const QString asUser : { "", "setpriv --reuid=65534 --regid=65534 --clear-groups" }) {
            QProcess client;
            const QString script = QStringLiteral("exec 3<>/dev/tcp/%1/%2 || exit 3\n"
                                                  "cat >&3\nhead -c 4 <&3\n");
            client.start(
                "timeout",
                QStringList{ "20" } + asUser.split(u' ', Qt::SkipEmptyParts) +
                    QStringList{ "bash", "-c", script.arg(address).arg(m_server->port()) });
            client.write(frame.data(), qint64(frame.size()));
            client.closeWriteChannel();
            // 124: timed out, the connection was left open; 3: no connection at all.
            QVERIFY(client.waitForFinished(30000) &&
                    !(QList{ 3, 124 }.contains(client.exitCode())));
            QCOMPARE(client.readAllStandardOutput().size(), asUser.isEmpty() ? 4 : 0);
        }
    }
    QVERIFY(m_server->log().contains("owned by uid 65534"));
}

void TestProtocol::launch()
{
    // The app key, the file its program writes and what it holds; nothing for a missing program.
    for (const auto& [appkey, marker, call] :
         { std::tuple("marker.desktop", ".direct", "direct unset"),
           { "console.desktop", ".terminal", "write-marker console" },
           { "broken.desktop", "", "" } }) {
        QFile::remove(m_script + marker);
        SrvClient client;
        QVERIFY(client.connectTo(m_server->port()));
        client.json(rq::plain(rq::getMenuDataModifiedStatus));
        QVERIFY(client.send(rq::launch(appkey)));
        // The launch is done when the next request is answered; the app runs on its own.
        const Json flags = client.json(rq::plain(rq::getMenuDataModifiedStatus));
        const Json recent = client.json(rq::plain(rq::getRecentAppsMenuData));
        const bool launched = *marker != 0;
        JCOMPARE(flags["recentAppsModified"], launched);
        QCOMPARE(recent[0]["appkey"] == appkey, launched);
        QCOMPARE(m_server->log().contains(QStringLiteral("cannot launch ") + appkey), !launched);
        if (launched)
            QTRY_VERIFY_WITH_TIMEOUT(TestDesktop::read(m_script + marker).contains(call), 20000);
    }
}

void TestProtocol::secondServerOnTheSamePortLeaves()
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

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"

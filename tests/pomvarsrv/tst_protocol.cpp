// The real server over TCP: framing, damaged and truncated frames, clients that stall or flood,
// only the server's own user served, launching real programs, a second server on the same port.
// What each request does is tst_servermodel's.
#include "ServerProcess.h"
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
    void initTestCase();
    void damagedFramesAndUnansweredRequests();
    void stalledOrFloodingClientsBlockNoOne();
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
    // GIO lists only entries whose program exists: soon-gone is removed once the server runs.
    QVERIFY(TestDesktop::write(root + "/bin/soon-gone", "#!/bin/sh\n", true));
    const std::pair<const char*, QString> entries[] = {
        { "alpha", "Exec=true" },
        { "marker", "Exec=" + m_script + " direct" },
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
         { std::string("garbage"),
           std::string(65535, '{'),
           std::string("{\n    \"id\": \"launch\",\n    \"appkey\": \"al"),
           std::string(R"({"id": "make-coffee"})"),
           rq::plain(rq::checkUpdates) })
        QVERIFY(client.send(body));
    // An awaited request cut short is still answered, so the front end stays in step.
    JCOMPARE(client.json("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"alp"),
             Json::parse(R"({"isset": false})"));
    QVERIFY(m_server->log().contains(
        "pomvarsrv: warning: ignoring a request with the unknown id \"make-coffee\""));
    QVERIFY(m_server->log().contains("warning: toggle-set-appcat: no installed app"));
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

void TestProtocol::otherUsersAreRefused()
{
    if (::getuid() != 0)
        QSKIP("needs root to run a client under another uid");
    // A shell client run as nobody prints what it reads back: nothing, as the server hangs up.
    const auto frame = *pomvar::wire::encodeRequestFrame(rq::plain(rq::getAppStatus));
    const QStringList nobody =
        QStringLiteral("20 setpriv --reuid=65534 --regid=65534 --clear-groups bash -c").split(u' ');
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

void TestProtocol::launch()
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
        QCOMPARE(m_server->log().contains(QStringLiteral("cannot launch ") + appkey), !launched);
    }
    // Its arguments, and not the server's port setting.
    QTRY_VERIFY_WITH_TIMEOUT(TestDesktop::read(m_script + ".direct").contains("direct unset"),
                             20000);
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

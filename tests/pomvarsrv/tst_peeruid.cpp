// Only processes of the server's own user may talk to it: a connection from another uid
// (a client run under setpriv, when the test runs as root) is closed without a reply.
#include "PeerCredentials.h"
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"

#include <QProcess>
#include <QTest>

#include <unistd.h>

using namespace pomvar::srvtest;
using pomvar::srv::PeerCredentials;

class TestPeerUid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void ownerFoundInTheKernelTable();
    void sameUserIsServed_data();
    void sameUserIsServed();
    void otherUserIsClosedWithoutReply_data();
    void otherUserIsClosedWithoutReply();
    void cleanupTestCase();

private:
    // What a bash client reads of the reply to one "get-app-status" request (at most its 41
    // bytes, less when the connection is closed), run as `uid` (or as ourselves).
    QByteArray clientReceives(const QString& address, int uid);

    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
};

void TestPeerUid::initTestCase()
{
    QVERIFY(m_desktop.isValid());
    QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(), "a.desktop", "Name=A\nExec=true\n"));
    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start());
}

void TestPeerUid::cleanupTestCase()
{
    if (m_server)
        QCOMPARE(m_server->quit(), 0);
}

void TestPeerUid::ownerFoundInTheKernelTable()
{
    // Lines as /proc/net/tcp and tcp6 print them: addresses in the machine's word order.
    const QByteArray table4 =
        "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  "
        "timeout inode\n"
        "   0: 0100007F:C6E2 0100007F:D4A2 01 00000000:00000000 00:00000000 00000000  1000 "
        "       0 1 1 0000000000000000 20 4 30 10 -1\n"
        "   1: 0100007F:D4A2 0100007F:C6E2 01 00000000:00000000 00:00000000 00000000 65534 "
        "       0 2 1 0000000000000000 20 4 30 10 -1\n";
    const QHostAddress local(QStringLiteral("127.0.0.1"));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0xD4A2, local, 0xC6E2),
             std::optional<unsigned>(65534));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0xC6E2, local, 0xD4A2),
             std::optional<unsigned>(1000));
    QCOMPARE(PeerCredentials::ownerUidIn(table4, local, 0x1234, local, 0xC6E2),
             std::optional<unsigned>());

    const QByteArray table6 =
        "  sl  local_address                         remote_address                        st "
        "tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n"
        "   0: 00000000000000000000000001000000:9C40 00000000000000000000000001000000:1F90 01 "
        "00000000:00000000 00:00000000 00000000     7        0 3 1 0000000000000000 20 4 0 10 -1\n";
    const QHostAddress loop6(QStringLiteral("::1"));
    QCOMPARE(PeerCredentials::ownerUidIn(table6, loop6, 0x9C40, loop6, 0x1F90),
             std::optional<unsigned>(7));
}

QByteArray TestPeerUid::clientReceives(const QString& address, int uid)
{
    const QString script =
        QStringLiteral("exec 3<>/dev/tcp/%1/%2 || exit 3\n"
                       "printf '\\000\\036{\\n    \"id\": \"get-app-status\"\\n}' >&3\n"
                       "head -c 41 <&3 2>/dev/null\n")
            .arg(address)
            .arg(m_server->port());
    QStringList arguments;
    QString program = QStringLiteral("timeout");
    arguments << QStringLiteral("20");
    if (uid >= 0)
        arguments << QStringLiteral("setpriv") << QStringLiteral("--reuid=%1").arg(uid)
                  << QStringLiteral("--regid=%1").arg(uid) << QStringLiteral("--clear-groups");
    arguments << QStringLiteral("bash") << QStringLiteral("-c") << script;
    QProcess client;
    client.start(program, arguments);
    if (!client.waitForFinished(30000))
        return "(client hung)";
    if (client.exitCode() == 124)
        return "(timed out: the connection was not closed)";
    if (client.exitCode() == 3)
        return "(no connection)";
    return client.readAllStandardOutput();
}

void TestPeerUid::sameUserIsServed_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("IPv4") << QStringLiteral("127.0.0.1");
    QTest::newRow("IPv6") << QStringLiteral("::1");
}

void TestPeerUid::sameUserIsServed()
{
    QFETCH(QString, address);
    // The same client as below, as ourselves: it reads the whole reply, 4 + 37 bytes.
    const QByteArray received = clientReceives(address, -1);
    QVERIFY2(received.contains("\"ready\":true"), received.constData());
}

void TestPeerUid::otherUserIsClosedWithoutReply_data()
{
    sameUserIsServed_data();
}

void TestPeerUid::otherUserIsClosedWithoutReply()
{
    if (::getuid() != 0)
        QSKIP("needs root to run a client under another uid");
    QFETCH(QString, address);
    const QByteArray received = clientReceives(address, 65534);
    QVERIFY2(received.isEmpty(), received.constData());
    QVERIFY(m_server->log().contains(QStringLiteral("owned by uid 65534")));

    SrvClient ours;
    QVERIFY(ours.connectTo(m_server->port()));
    QVERIFY(ours.request(SrvClient::plain("get-app-status")).has_value());
}

QTEST_GUILESS_MAIN(TestPeerUid)
#include "tst_peeruid.moc"

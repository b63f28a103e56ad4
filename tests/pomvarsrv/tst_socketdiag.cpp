// The kernel's socket records by their addresses: the owner and the inode of either end of a
// loopback connection and of a listener, over IPv4 and IPv6, and nothing for a socket that
// does not exist.
#include "pomvarsrv/ipc/SocketDiag.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using pomvar::srv::SocketDiag;

namespace {

unsigned long long inodeOf(qintptr descriptor)
{
    struct stat info;
    return ::fstat(int(descriptor), &info) == 0 ? info.st_ino : 0;
}

} // namespace

class TestSocketDiag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsEitherEndAndTheListener_data()
    {
        QTest::addColumn<QHostAddress>("loopback");
        QTest::newRow("IPv4") << QHostAddress(QHostAddress::LocalHost);
        QTest::newRow("IPv6") << QHostAddress(QHostAddress::LocalHostIPv6);
    }
    void findsEitherEndAndTheListener()
    {
        QFETCH(QHostAddress, loopback);
        QTcpServer server;
        QVERIFY(server.listen(loopback));
        QTcpSocket client;
        client.connectToHost(loopback, server.serverPort());
        QVERIFY(server.waitForNewConnection(5000));
        QTcpSocket* accepted = server.nextPendingConnection();
        QVERIFY(client.waitForConnected(5000));

        const auto clientEnd =
            SocketDiag::connection(loopback, client.localPort(), loopback, server.serverPort());
        QVERIFY(clientEnd);
        QCOMPARE(clientEnd->uid, ::getuid());
        QCOMPARE(clientEnd->inode, inodeOf(client.socketDescriptor()));
        const auto serverEnd =
            SocketDiag::connection(loopback, server.serverPort(), loopback, client.localPort());
        QVERIFY(serverEnd);
        QCOMPARE(serverEnd->inode, inodeOf(accepted->socketDescriptor()));
        const auto listener = SocketDiag::listener(loopback, server.serverPort());
        QVERIFY(listener);
        QCOMPARE(listener->inode, inodeOf(server.socketDescriptor()));

        // The ends swapped name no socket; nor does a port nobody listens on.
        QVERIFY(!SocketDiag::connection(
            loopback, client.localPort(), loopback, quint16(server.serverPort() + 1)));
        server.close();
        QVERIFY(!SocketDiag::listener(loopback, server.serverPort()));
    }
};

QTEST_GUILESS_MAIN(TestSocketDiag)
#include "tst_socketdiag.moc"

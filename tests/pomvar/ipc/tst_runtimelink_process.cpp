#include "ChildProcess.h"
#include "FakeRuntimeServer.h"

#include <QProcess>
#include <QTcpServer>
#include <QTest>

using test_server = pomvar::test::FakeRuntimeServer;
using Reply = test_server::Reply;
using pomvar::test::ChildOutcome;
using pomvar::test::runChild;

namespace {

ChildOutcome runDriver(quint16 port, const QStringList& args, int waitMs = 15000)
{
    return runChild(
        qEnvironmentVariable("IPC_DRIVER"), QStringList{ QString::number(port) } + args, waitMs);
}

quint16 unusedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort(); // closed again when probe goes out of scope
}

} // namespace

class TestRuntimeLinkProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusedConnectionExitsWithStatusOne()
    {
        const ChildOutcome outcome =
            runDriver(unusedPort(), { QStringLiteral("send"), QStringLiteral("about") });
        QVERIFY(outcome.exitedWith(1));
        QCOMPARE(outcome.out, QByteArray("Pomvar: PomvarViewModel: Error: Connection refused\n"));
    }

    void anOversizedRequestStopsTheProcess()
    {
        test_server server;
        QVERIFY(server.listen());
        const ChildOutcome outcome = runDriver(server.port(), { QStringLiteral("oversize") });
        QVERIFY(outcome.crashed());
        QVERIFY(!outcome.out.contains("sent"));
        QVERIFY(outcome.err.contains("65536"));
    }

    void aZeroLengthReplyLeavesTheCallerBlocked()
    {
        test_server server;
        QVERIFY(server.listen());
        server.queueReply("get-app-status", Reply::empty());
        const ChildOutcome outcome = runDriver(
            server.port(), { QStringLiteral("await"), QStringLiteral("get-app-status") }, 1500);
        QVERIFY(!outcome.finished);
        QVERIFY(outcome.out.isEmpty());
    }

    void brokenRecordsStopTheProcessNamingTheFault_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("fault");
        const QString prefs = QStringLiteral(
            R"("AnimationFx": true, "SaveExpAppCats": true, "SaveLastMenu": true, "OneExpAppCat": false)");
        QTest::newRow("density 1.5") << "user-prefs"
                                     << "{\"MenuDensity\": 1.5, " + prefs + "}"
                                     << "\"MenuDensity\" must be an integer";
        QTest::newRow("density as text") << "user-prefs"
                                         << "{\"MenuDensity\": \"1\", " + prefs + "}"
                                         << "\"MenuDensity\" must be an integer";
        QTest::newRow("key in other case") << "user-prefs"
                                           << "{\"menuDensity\": 1, " + prefs + "}"
                                           << "\"MenuDensity\" is missing";
        QTest::newRow("boolean as 1")
            << "user-prefs"
            << R"({"MenuDensity": 0, "AnimationFx": 1, "SaveExpAppCats": true, "SaveLastMenu": true, "OneExpAppCat": false})"
            << "\"AnimationFx\" must be a boolean";
        QTest::newRow("status lacks updateFinished") << "app-status"
                                                     << R"({"ready": true})"
                                                     << "\"updateFinished\" is missing";
        QTest::newRow("status not an object") << "app-status"
                                              << "[true, false]"
                                              << "not an object";
        QTest::newRow("status not JSON") << "app-status"
                                         << "ready"
                                         << "not JSON";
        QTest::newRow("flags with null")
            << "menu-status"
            << R"({"appFolderModified": null, "recentAppsModified": false, "appcatsModified": false, "pinnedAppsModified": false})"
            << "\"appFolderModified\" must be a boolean";
    }

    void brokenRecordsStopTheProcessNamingTheFault()
    {
        QFETCH(QString, command);
        QFETCH(QString, reply);
        QFETCH(QString, fault);
        test_server server;
        QVERIFY(server.listen());
        const std::string id = command == QLatin1String("user-prefs") ? "get-user-prefs"
                               : command == QLatin1String("app-status")
                                   ? "get-app-status"
                                   : "get-menu-data-modified-status";
        server.queueReply(id, Reply::text(reply.toStdString()));
        const ChildOutcome outcome = runDriver(server.port(), { command });
        QVERIFY(outcome.crashed());
        QVERIFY2(outcome.err.contains(fault.toUtf8()), outcome.err.constData());
        QVERIFY(outcome.out.isEmpty());
    }

    void aMissingRecordReplyStopsTheProcess()
    {
        test_server server;
        QVERIFY(server.listen());
        server.queueReply("get-user-prefs", Reply::close());
        const ChildOutcome outcome = runDriver(server.port(), { QStringLiteral("user-prefs") });
        QVERIFY(outcome.crashed());
        QVERIFY(outcome.err.contains("get-user-prefs"));
    }
};

QTEST_GUILESS_MAIN(TestRuntimeLinkProcess)
#include "tst_runtimelink_process.moc"

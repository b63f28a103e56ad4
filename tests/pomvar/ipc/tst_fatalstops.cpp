// A broken server contract stops the front end, naming the fault: records with a missing or
// mistyped field, menu data that does not hold together, an oversized request. A refused
// connection ends it with status 1; a zero-length reply leaves it waiting.
#include "ChildProcess.h"
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"

#include <QSettings>
#include <QTcpServer>
#include <QTest>

using namespace pomvar::test;
using Reply = FakeRuntimeServer::Reply;
using nlohmann::json;

namespace {

ChildOutcome runDriver(quint16 port, const QStringList& args, int waitMs = 15000)
{
    return runChild(
        qEnvironmentVariable("LINK_DRIVER"), QStringList{ QString::number(port) } + args, waitMs);
}

} // namespace

class TestFatalStops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenRepliesStopTheProcessNamingTheFault_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QByteArray>("fault");
        const QByteArray prefs =
            R"("SaveExpAppCats": true, "SaveLastMenu": true, "OneExpAppCat": false})";
        QTest::newRow("density 1.5") << "user-prefs"
                                     << "get-user-prefs"
                                     << R"({"MenuDensity": 1.5, "AnimationFx": true, )" + prefs
                                     << QByteArray("\"MenuDensity\" must be an integer");
        QTest::newRow("key in other case") << "user-prefs"
                                           << "get-user-prefs"
                                           << R"({"menuDensity": 1, "AnimationFx": true, )" + prefs
                                           << QByteArray("\"MenuDensity\" is missing");
        QTest::newRow("boolean as 1") << "user-prefs"
                                      << "get-user-prefs"
                                      << R"({"MenuDensity": 0, "AnimationFx": 1, )" + prefs
                                      << QByteArray("\"AnimationFx\" must be a boolean");
        QTest::newRow("no reply at all")
            << "user-prefs"
            << "get-user-prefs" << QByteArray() << QByteArray("get-user-prefs");
        QTest::newRow("status lacks updateFinished")
            << "app-status"
            << "get-app-status" << QByteArray(R"({"ready": true})")
            << QByteArray("\"updateFinished\" is missing");
        QTest::newRow("status not an object")
            << "app-status"
            << "get-app-status" << QByteArray("[true, false]") << QByteArray("not an object");
        QTest::newRow("status not JSON")
            << "app-status"
            << "get-app-status" << QByteArray("ready") << QByteArray("not JSON");
        QTest::newRow("flag null")
            << "menu-status"
            << "get-menu-data-modified-status"
            << QByteArray(
                   R"({"appFolderModified": null, "recentAppsModified": false, "appcatsModified": false, "pinnedAppsModified": false})")
            << QByteArray("\"appFolderModified\" must be a boolean");
        QTest::newRow("update check not JSON") << "build"
                                               << "check-update-available" << QByteArray("{broken")
                                               << QByteArray("check-update-available");
        QTest::newRow("toggle answer without isset")
            << "toggle"
            << "toggle-set-appcat" << QByteArray("{}") << QByteArray("isset");
        QTest::newRow("update status without status")
            << "poll"
            << "get-app-update-status" << QByteArray(R"({"state": "noUpdate"})")
            << QByteArray("\"status\"");
        // All Apps holds app1 only; the stray app is filed but not installed.
        FakeMenus menus;
        menus.addApps(1, "", "");
        menus.addApp({ "stray.desktop", "Stray", "", "" });
        menus.addCategory("Work", { "app1" });
        json ghost = menus.myApps();
        ghost["appcats"].push_back("Ghost");
        QTest::newRow("category without members")
            << "build"
            << "get-myapps-menu-data" << QByteArray::fromStdString(ghost.dump())
            << QByteArray("\"Ghost\"");
        json stray = menus.myApps();
        stray["appcatapps"]["Work"].push_back(menus.allApps()[1]);
        QTest::newRow("member unknown to All Apps")
            << "build"
            << "get-myapps-menu-data" << QByteArray::fromStdString(stray.dump())
            << QByteArray("stray.desktop");
        json badRename = menus.myApps();
        badRename["renamedAppcats"].push_back({ { "old", "Work" } });
        QTest::newRow("rename without new")
            << "build"
            << "get-myapps-menu-data" << QByteArray::fromStdString(badRename.dump())
            << QByteArray("\"old\" and \"new\"");
    }
    void brokenRepliesStopTheProcessNamingTheFault()
    {
        QFETCH(QString, command);
        QFETCH(QString, id);
        QFETCH(QByteArray, reply);
        QFETCH(QByteArray, fault);
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        FakeMenus installed;
        installed.addApps(1, "", "");
        server.setDefaultReply("get-allapps-menu-data", Reply::json(installed.allApps()));
        server.setDefaultReply(id.toStdString(),
                               reply.isEmpty() ? Reply::close() : Reply::text(reply.toStdString()));
        // A saved expansion map makes the rename list count.
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar")
            .setValue("ExpandedAppCats", QVariantMap{ { "Work", true } });
        const ChildOutcome outcome = runDriver(server.port(), { command, "k", "c" });
        QVERIFY(outcome.crashed());
        QVERIFY2(outcome.err.contains(fault), outcome.err.constData());
        QVERIFY(!outcome.out.contains("isset") && !outcome.out.contains("done"));
    }

    void aTextIssetIsAcceptedAsTrue()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", "yes" } }));
        const ChildOutcome outcome = runDriver(server.port(), { "toggle", "k", "c" });
        QVERIFY(outcome.exitedWith(0));
        QCOMPARE(outcome.out, QByteArray("built\nisset\n"));
    }

    void aRefusedConnectionExitsWithStatusOne()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            port = probe.serverPort();
        }
        const ChildOutcome outcome = runDriver(port, { "send", "about" });
        QVERIFY(outcome.exitedWith(1));
        QCOMPARE(outcome.out, QByteArray("Pomvar: PomvarViewModel: Error: Connection refused\n"));
    }

    void anOversizedRequestStopsTheProcess()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        const ChildOutcome outcome = runDriver(server.port(), { "oversize" });
        QVERIFY(outcome.crashed());
        QVERIFY(!outcome.out.contains("sent"));
        QVERIFY(outcome.err.contains("65536"));
    }

    void aZeroLengthReplyLeavesTheCallerWaiting()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("get-app-status", Reply::empty());
        const ChildOutcome outcome = runDriver(server.port(), { "await", "get-app-status" }, 1500);
        QVERIFY(!outcome.finished);
        QVERIFY(outcome.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFatalStops)
#include "tst_fatalstops.moc"

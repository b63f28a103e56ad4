#include "FakeRuntimeServer.h"
#include "MenuPayloads.h"

#include <QProcess>
#include <QSettings>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;
using nlohmann::json;

namespace {

struct Outcome
{
    bool crashed = false;
    QByteArray out;
    QByteArray err;
};

Outcome runDriver(const FakeRuntimeServer& server, QStringList args)
{
    QProcess driver;
    driver.start(qEnvironmentVariable("VM_DRIVER"),
                 QStringList{ QString::number(server.port()) } + args);
    const bool finished = driver.waitForFinished(20000);
    if (!finished)
        driver.kill();
    return { finished && driver.exitStatus() == QProcess::CrashExit,
             driver.readAllStandardOutput(),
             driver.readAllStandardError() };
}

} // namespace

class TestViewModelProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenMenuDataStopsTheBuild_data()
    {
        QTest::addColumn<QString>("myApps");
        QTest::addColumn<QString>("fault");
        const json app = test::appJson("app0000.desktop", "App 0000");
        json missingMembers = test::myAppsJson({}, { { "Work", { app } } });
        missingMembers["appcats"].push_back("Ghost");
        QTest::newRow("category without members")
            << QString::fromStdString(missingMembers.dump()) << QStringLiteral("\"Ghost\"");
        QTest::newRow("member unknown to All Apps")
            << QString::fromStdString(
                   test::myAppsJson({}, { { "Work", { test::appJson("stray.desktop", "Stray") } } })
                       .dump())
            << QStringLiteral("stray.desktop");
        json badRename = test::myAppsJson({}, { { "Work", { app } } });
        badRename["renamedAppcats"].push_back({ { "old", "Work" } });
        QTest::newRow("rename without new")
            << QString::fromStdString(badRename.dump()) << QStringLiteral("\"old\" and \"new\"");
    }

    void brokenMenuDataStopsTheBuild()
    {
        QFETCH(QString, myApps);
        QFETCH(QString, fault);
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.setDefaultReply("get-allapps-menu-data", Reply::json(test::allAppsJson(1)));
        server.setDefaultReply("get-myapps-menu-data", Reply::text(myApps.toStdString()));
        // A saved expansion map makes the rename list count.
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar")
            .setValue("ExpandedAppCats", QVariantMap{ { "Work", true } });
        const Outcome outcome = runDriver(server, { QStringLiteral("build") });
        QVERIFY(outcome.crashed);
        QVERIFY2(outcome.err.contains(fault.toUtf8()), outcome.err.constData());
        QVERIFY(!outcome.out.contains("built"));
    }

    void contractRepliesOfTheActionsAreRequired()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("toggle-set-appcat", Reply::json(json::object()));
        Outcome outcome = runDriver(
            server, { QStringLiteral("toggle"), QStringLiteral("k"), QStringLiteral("c") });
        QVERIFY(outcome.crashed);
        QVERIFY(outcome.err.contains("isset"));

        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", "yes" } }));
        outcome = runDriver(server,
                            { QStringLiteral("toggle"), QStringLiteral("k"), QStringLiteral("c") });
        QVERIFY(!outcome.crashed);
        QVERIFY(outcome.out.contains("isset\ndone"));

        server.queueReply("check-update-available", Reply::text("{broken"));
        outcome = runDriver(server, { QStringLiteral("build") });
        QVERIFY(outcome.crashed);
        QVERIFY(outcome.err.contains("check-update-available"));

        server.setDefaultReply("get-app-update-status", Reply::json({ { "state", "noUpdate" } }));
        outcome = runDriver(server, { QStringLiteral("poll") });
        QVERIFY(outcome.crashed);
        QVERIFY(outcome.err.contains("\"status\""));
    }
};

QTEST_GUILESS_MAIN(TestViewModelProcess)
#include "tst_viewmodel_process.moc"

// Updates the Linux way, in a server run in-process whose install folder is a temporary one:
// the version file installed there against the running version, over the wire and in the updates
// window; a change of the folder noticed while the window is open; the wait for the front end
// to go; the restart into the installed front end and "updateFinished" once after it; what may
// be started as the front end.
#include "InProcessServer.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/app/FrontEndExit.h"
#include "pomvarsrv/app/Updates.h"
#include "pomvarsrv/catalogue/AutostartEntry.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"
#include "wire/Version.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <csignal>
#include <unistd.h>

using namespace pomvar::srv;
using namespace pomvar::test;
namespace rq = pomvar::request;

class TestUpdates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(), "a.desktop", "Name=A\nExec=true"));
        QVERIFY(
            TestDesktop::write(m_desktop.storePath(), R"({"version": 1, "pins": ["a.desktop"]})"));
        // <prefix>/bin/pomvar notes that it was started.
        QVERIFY(TestDesktop::write(
            m_prefix.filePath("bin/pomvar"), "#!/bin/sh\ntouch \"$0.started\"\n", true));
        InProcessServer::useDesktop(m_desktop);
        QVERIFY(m_server.start(options()));
    }

    void theInstalledVersion_data()
    {
        QTest::addColumn<QByteArray>("installed"); // the version file; empty: none
        QTest::addColumn<bool>("newer");
        QTest::newRow("newer") << QByteArray("99.1.0\n") << true;
        QTest::newRow("the same") << QByteArray(pomvar::version().data()) << false;
        QTest::newRow("older") << QByteArray("0.0.1\n") << false;
        QTest::newRow("unreadable") << QByteArray("next\n") << false;
        QTest::newRow("none") << QByteArray() << false;
    }
    void theInstalledVersion()
    {
        QFETCH(QByteArray, installed);
        QFETCH(bool, newer);
        QFile::remove(versionFile());
        QVERIFY(installed.isEmpty() || TestDesktop::write(versionFile(), installed));
        JCOMPARE(m_server.ask(rq::plain(rq::checkUpdateAvailable))["isUpdateAvailable"], newer);
        JCOMPARE(m_server.ask(rq::plain(rq::getAppUpdateStatus))["status"],
                 newer ? "updateAvailable" : "noUpdate");
        QWidget* window = openUpdates();
        QVERIFY(window);
        QCOMPARE(text(window),
                 newer ? QString("Pomvar 99.1.0 is installed. Restart to use it.")
                       : QString("Pomvar %1 is up to date.").arg(pomvar::version().data()));
        QCOMPARE(window->findChild<QPushButton*>("restartPomvar")->isVisible(), newer);
        // Nothing newer: nothing to restart into.
        Updates updates(options().installDir, QString::fromUtf8(pomvar::version()));
        updates.confirm();
        QCOMPARE(updates.isConfirmed(), newer);
    }

    void aChangedInstallFolderIsNoticed()
    {
        QWidget* window = openUpdates();
        QVERIFY(window);
        // As a package manager does: the new file beside, then renamed over the old one.
        QVERIFY(TestDesktop::write(versionFile() + ".new", "99.2.0\n"));
        QVERIFY(QFile::rename(versionFile() + ".new", versionFile()));
        QTRY_COMPARE(text(window), "Pomvar 99.2.0 is installed. Restart to use it.");
        // And as a hand edit does: written in place.
        QFile file(versionFile());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write("99.3.0\n"));
        file.close();
        QTRY_COMPARE(text(window), "Pomvar 99.3.0 is installed. Restart to use it.");
    }

    void restartIntoTheInstalledFrontEnd()
    {
        QWidget* window = openUpdates();
        QVERIFY(window && window->findChild<QPushButton*>("restartPomvar")->isVisible());
        QTest::keyClick(window, Qt::Key_Return); // "Restart Pomvar", the default
        // No front end runs: the installed one is started at once, after the port was closed.
        QTRY_VERIFY(QFile::exists(m_prefix.filePath("bin/pomvar.started")));
        SrvClient client;
        QVERIFY(!client.connectTo(m_server.port()));
        const auto store = nlohmann::json::parse(TestDesktop::read(m_desktop.storePath()).data());
        JCOMPARE(store["updatedFrom"], std::string(pomvar::version()));
        // The restarted server says once that the update is finished.
        InProcessServer restarted;
        QVERIFY(restarted.start(options()));
        for (const bool finished : { true, false })
            JCOMPARE(restarted.ask(rq::plain(rq::getAppStatus)),
                     (nlohmann::json{ { "ready", true }, { "updateFinished", finished } }));
        JCOMPARE(nlohmann::json::parse(TestDesktop::read(m_desktop.storePath()).data())["pins"],
                 store["pins"]);
    }

    // The update's restart and the autostart entry run only the installed front end.
    void onlyTheInstalledFrontEndIsStarted_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("a file of the server's owner, writable by it alone") << "file";
        QTest::newRow("writable by its group") << "group";
        QTest::newRow("writable by others") << "others";
        QTest::newRow("another user's") << "owner";
        QTest::newRow("a symbolic link to the program") << "link";
        QTest::newRow("a folder") << "folder";
        QTest::newRow("missing") << "missing";
    }
    void onlyTheInstalledFrontEndIsStarted()
    {
        QFETCH(QString, kind);
        if (kind == "owner" && ::getuid() != 0)
            QSKIP("needs root to give a file to another user");
        QTemporaryDir prefix;
        const QString program = prefix.filePath("bin/pomvar"), real = prefix.filePath("real");
        QVERIFY(TestDesktop::write(real, "#!/bin/sh\ntouch \"$0.started\"\n", true));
        QVERIFY(QDir().mkpath(prefix.filePath("bin")) &&
                QDir().mkpath(prefix.filePath("libexec/pomvar")));
        const auto mode = QFile::permissions(real);
        if (kind == "link")
            QVERIFY(QFile::link(real, program));
        else if (kind == "folder")
            QVERIFY(QDir().mkpath(program));
        else if (kind != "missing")
            QVERIFY(QFile::copy(real, program) &&
                    QFile::setPermissions(program,
                                          mode | (kind == "group"    ? QFile::WriteGroup
                                                  : kind == "others" ? QFile::WriteOther
                                                                     : QFile::Permissions())));
        QVERIFY(kind != "owner" || ::chown(QFile::encodeName(program), 65534, 65534) == 0);
        const bool allowed = kind == "file";
        Updates updates(prefix.filePath("libexec/pomvar"), "0.0.1");
        QString why;
        QCOMPARE(updates.startInstalledFrontEnd(&why), allowed);
        QCOMPARE(why.isEmpty(), allowed);
        const AutostartEntry entry(prefix.filePath("autostart/pomvar.desktop"));
        QCOMPARE(entry.setEnabled(true, program), allowed);
        QCOMPARE(QFile::exists(entry.path()), allowed);
        if (allowed)
            QTRY_VERIFY(QFile::exists(program + ".started"));
    }

    void waitingForTheFrontEnd_data()
    {
        // "running": a process of the front end's program; "stale": the PID file names another
        // program; "quits": it removes its PID file and ends while waited for; "noPidFile": it
        // wrote none, and is known as the one that started us.
        QTest::addColumn<QString>("kind");
        QTest::newRow("none") << "";
        QTest::newRow("a stale PID file") << "stale";
        QTest::newRow("quits at its poll") << "running quits";
        QTest::newRow("not polling: SIGTERM") << "running";
        QTest::newRow("no PID file: SIGTERM") << "running noPidFile";
    }
    void waitingForTheFrontEnd()
    {
        QFETCH(QString, kind);
        const bool running = kind.contains("running"), stale = kind == "stale",
                   quitsItself = kind.contains("quits"), noPidFile = kind.contains("noPidFile");
        QTemporaryDir dir;
        const QString program = dir.filePath("bin/pomvar"), pidFile = dir.filePath("pomvar.pid");
        QVERIFY(QDir().mkpath(dir.filePath("bin")) && QFile::copy("/bin/sleep", program));
        QProcess frontEnd;
        if (running) {
            frontEnd.start(program, { "60" });
            QVERIFY(frontEnd.waitForStarted());
        }
        const qint64 pid = stale ? QCoreApplication::applicationPid() : frontEnd.processId();
        QVERIFY(!(running || stale) || noPidFile ||
                TestDesktop::write(pidFile, QByteArray::number(pid)));
        // One that quits by itself does so within the grace time: it is never asked to.
        FrontEndExit exit(pidFile, program, quitsItself ? FrontEndExit::kGraceMs : 300);
        if (noPidFile)
            exit.setStartedBy(pid_t(pid));
        QSignalSpy gone(&exit, &FrontEndExit::gone);
        exit.wait();
        if (quitsItself) {
            QVERIFY(gone.isEmpty());
            QVERIFY(QFile::remove(pidFile));
            frontEnd.kill();
        }
        QTRY_COMPARE(gone.size(), 1);
        QVERIFY(!QFile::exists(pidFile));
        if (running) {
            QTRY_COMPARE(frontEnd.state(), QProcess::NotRunning);
            QCOMPARE(frontEnd.exitCode(), quitsItself ? SIGKILL : SIGTERM); // the signal
        }
    }

private:
    ServerOptions options() const
    {
        ServerOptions options;
        options.installDir = m_prefix.filePath("libexec/pomvar");
        QDir().mkpath(options.installDir);
        return options;
    }
    QString versionFile() const
    {
        return m_prefix.filePath("libexec/pomvar/") + pomvar::paths::versionFile;
    }
    // Closed first, so that what it shows is the answer to this request.
    QWidget* openUpdates()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == "updatesWindow")
                window->close();
        if (!m_server.send(rq::plain(rq::checkUpdates)))
            return nullptr;
        QWidget* window = InProcessServer::waitForWindow("updatesWindow");
        return window && QTest::qWaitForWindowActive(window) ? window : nullptr;
    }
    static QString text(QWidget* window)
    {
        return window->findChild<QLabel*>("updatesText")->text();
    }

    TestDesktop m_desktop;
    QTemporaryDir m_prefix;
    InProcessServer m_server;
};

QTEST_MAIN(TestUpdates)
#include "tst_updates.moc"

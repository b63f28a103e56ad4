// The real pomvar program in a copied install layout, with the fake runtime server in place of
// its own: help and version, the single-instance PID file over a run and its ends, the arguments
// the server gets, and the wait for the server's port.
#include "InstallLayout.h"

#include <QTest>

#include <csignal>

using pomvar::test::InstallLayout;

namespace {

const QString kPid = "home/.cache/Pomvar4Mac/pomvar.pid";
const QByteArray kRunning = "Pomvar for Mac is already running.\n";
const QByteArray kHelp = "Pomvar for Mac: the customizable app launcher for macOS\n\n"
                         "usage: pomvar [options]\n"
                         "options:\n"
                         "  --clear-recent\n      clear the recent apps menu\n"
                         "  --refresh\n      refresh the pomvar\n"
                         "  --welcome\n      show welcome dialog at startup\n"
                         "  -h, --help\n      show this help message and exit\n"
                         "  --version\n      show version information and exit\n\n";

void stop(QProcess& process, int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    process.waitForFinished(60000);
}

} // namespace

class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsAndExitsWithoutStartingTheServer_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("pidFilePresent");
        QTest::addColumn<bool>("terminal");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("--help") << QStringList{ "--help" } << false << false << kHelp;
        // Only a terminal gets the headings in bold.
        QTest::newRow("--help in a terminal") << QStringList{ "--help" } << false << true
                                              << QByteArray(kHelp)
                                                     .replace("usage:", "\x1b[1musage:\x1b[0m")
                                                     .replace("options:", "\x1b[1moptions:\x1b[0m");
        QTest::newRow("--version") << QStringList{ "--version" } << false << false
                                   << QByteArray("Pomvar for Mac version 0.1.0\n");
        // Only the file's presence counts, not the number in it; it wins over every option.
        QTest::newRow("PID file, --help") << QStringList{ "--help" } << true << false << kRunning;
        QTest::newRow("PID file, no options") << QStringList{} << true << false << kRunning;
    }
    void printsAndExitsWithoutStartingTheServer()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, pidFilePresent);
        QFETCH(bool, terminal);
        QFETCH(QByteArray, expected);
        InstallLayout shell;
        QVERIFY(shell.isValid());
        QVERIFY(!pidFilePresent || shell.write(kPid, "999999999"));
        auto outcome = shell.run(arguments, terminal);
        QVERIFY(outcome.exitedWith(0));
        QCOMPARE(outcome.out.replace("\r\n", "\n"), expected); // a terminal's line ends
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(shell.read("fake/argv.json"), "<missing>");
        QCOMPARE(shell.read(kPid), pidFilePresent ? "999999999" : "<missing>");
    }

    void signalsEndARun()
    {
        InstallLayout shell;
        QVERIFY(shell.isValid());
        // Each run after the first finds the port taken by the first fake server, and uses it.
        for (const int signal : { SIGTERM, SIGINT, SIGTRAP }) {
            auto pomvar = shell.start();
            QVERIFY(InstallLayout::isConnectedToServer(*pomvar));
            // The process number alone, no line break.
            QCOMPARE(shell.read(kPid), QByteArray::number(pomvar->processId()));
            stop(*pomvar, signal);
            QCOMPARE(pomvar->readAllStandardOutput(), QByteArray());
            QVERIFY(pomvar->exitStatus() == QProcess::NormalExit && pomvar->exitCode() == 1);
            QCOMPARE(shell.read(kPid), "<missing>");
        }
    }

    void aServerThatListensLateIsWaitedForAndGetsTheOptions()
    {
        InstallLayout shell;
        QVERIFY(shell.write("fake/script.json", R"({"listenDelayMs": 1500})"));
        // Had the front end not waited, its connection would have been refused and it would
        // have ended with status 1.
        auto pomvar = shell.start({ "--welcome", "--refresh" });
        QVERIFY(InstallLayout::isConnectedToServer(*pomvar));
        QCOMPARE(shell.read("fake/argv.json"), "[\"--refresh\",\"--welcome\"]\n");
        stop(*pomvar, SIGTERM);
    }

    void aProbeThatCannotBeReadEndsTheStartWithStatusOne()
    {
        InstallLayout shell;
        // Once the port is really in use, the probe's output is not UTF-8.
        QVERIFY(shell.write(
            "tools/lsof", "#!/bin/sh\n/usr/bin/lsof \"$@\" >/dev/null && printf '\\377'\n", true));
        const auto outcome = shell.run({ "--refresh" });
        QVERIFY(outcome.exitedWith(1));
        QCOMPARE(outcome.out + outcome.err, QByteArray()); // the sanitizers also end with 1
        QCOMPARE(shell.read(kPid), "<missing>");
        QCOMPARE(shell.read("fake/argv.json"), "[\"--refresh\"]\n");
    }
};

QTEST_GUILESS_MAIN(TestShell)
#include "tst_shell.moc"

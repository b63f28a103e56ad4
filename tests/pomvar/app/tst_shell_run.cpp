// The real pomvar program starting the fake runtime server in its place: the arguments the
// server gets, the PID file over a run and its ends, and the wait for the server's port.
#include "ShellHarness.h"

#include <QFile>
#include <QTest>

#include <csignal>

using pomvar::test::ShellHarness;

namespace {

constexpr int kUpMs = 60000;

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Stops `process` with `signal` and waits for its end.
void stop(QProcess& process, int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    process.waitForFinished(kUpMs);
}

} // namespace

class TestShellRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionsBecomeServerArgumentsInDefinitionOrder_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("serverArguments");
        QTest::newRow("none") << QStringList{} << QStringList{};
        QTest::newRow("--refresh --clear-recent") << QStringList{ "--refresh", "--clear-recent" }
                                                  << QStringList{ "--clear-recent", "--refresh" };
        QTest::newRow("--bogus --refresh")
            << QStringList{ "--bogus", "--refresh" } << QStringList{};
        QTest::newRow("repeated, with a plain word")
            << QStringList{ "--welcome", "word", "--refresh", "--welcome" }
            << QStringList{ "--refresh", "--welcome" };
        QTest::newRow("after ---")
            << QStringList{ "--welcome", "---", "--refresh" } << QStringList{ "--welcome" };
    }

    void optionsBecomeServerArgumentsInDefinitionOrder()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, serverArguments);
        ShellHarness shell;
        QVERIFY(shell.isValid());

        auto pomvar = shell.start(arguments);
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*pomvar), kUpMs);
        stop(*pomvar, SIGTERM);

        QCOMPARE(pomvar->readAllStandardOutput(), QByteArray());
        const auto recorded = shell.fakeArguments();
        QVERIFY(recorded);
        QCOMPARE(recorded->toVariantList(), QVariant(serverArguments).toList());
        QCOMPARE(shell.killFakeServers(), 1);
    }

    void aRunningFrontEndHoldsItsPidFile()
    {
        ShellHarness shell;
        QVERIFY(shell.isValid());

        auto pomvar = shell.start({});
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*pomvar), kUpMs);

        // The process number alone, no line break.
        QCOMPARE(readFile(shell.pidFilePath()), QByteArray::number(pomvar->processId()));
        stop(*pomvar, SIGTERM);
    }

    void aHandledSignalRemovesThePidFileAndTheNextStartSucceeds_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << int(SIGTERM);
        QTest::newRow("SIGINT") << int(SIGINT);
        QTest::newRow("SIGTRAP") << int(SIGTRAP);
    }

    void aHandledSignalRemovesThePidFileAndTheNextStartSucceeds()
    {
        QFETCH(int, signal);
        ShellHarness shell;
        QVERIFY(shell.isValid());

        auto first = shell.start({});
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*first), kUpMs);
        stop(*first, signal);

        QCOMPARE(first->exitStatus(), QProcess::NormalExit);
        QCOMPARE(first->exitCode(), 1);
        QCOMPARE(first->readAllStandardOutput(), QByteArray());
        QVERIFY(!QFile::exists(shell.pidFilePath()));

        auto second = shell.start({});
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*second), kUpMs);
        QCOMPARE(readFile(shell.pidFilePath()), QByteArray::number(second->processId()));
        stop(*second, SIGTERM);
        QCOMPARE(second->readAllStandardOutput(), QByteArray());
    }

    void sigkillLeavesThePidFileAndTheNextStartIsRefused()
    {
        ShellHarness shell;
        QVERIFY(shell.isValid());

        auto first = shell.start({});
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*first), kUpMs);
        const qint64 pid = first->processId();
        stop(*first, SIGKILL);
        QCOMPARE(first->exitStatus(), QProcess::CrashExit);
        QCOMPARE(readFile(shell.pidFilePath()), QByteArray::number(pid));

        const auto second = shell.run({});
        QVERIFY(second.finished);
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(second.out, QByteArray("Pomvar for Mac is already running.\n"));
    }

    void aServerThatListensLateIsWaitedFor()
    {
        ShellHarness shell;
        QVERIFY(shell.isValid());
        shell.writeFakeScript(R"({"listenDelayMs": 1500})");

        auto pomvar = shell.start({ "--welcome" });
        // Had the front end not waited, its connection would have been refused: it would
        // have printed the refusal and ended with status 1.
        QTRY_VERIFY_WITH_TIMEOUT(ShellHarness::isConnectedToServer(*pomvar), kUpMs);
        QCOMPARE(pomvar->state(), QProcess::Running);
        QCOMPARE(pomvar->readAllStandardOutput(), QByteArray());
        QCOMPARE(shell.fakeArguments()->toVariantList(), QVariantList{ "--welcome" });
        stop(*pomvar, SIGTERM);
        QCOMPARE(pomvar->exitCode(), 1);
    }

    void aProbeThatCannotBeReadEndsTheStartWithStatusOne()
    {
        ShellHarness shell;
        QVERIFY(shell.isValid());
        // Once the port is really in use, the probe's output is not UTF-8.
        QVERIFY(shell.addToolOnPath("lsof", "/usr/bin/lsof \"$@\" >/dev/null && printf '\\377'\n"));

        const auto outcome = shell.run({ "--refresh" });

        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitStatus, QProcess::NormalExit);
        QCOMPARE(outcome.exitCode, 1);
        QCOMPARE(outcome.out, QByteArray());
        QCOMPARE(outcome.err, QByteArray()); // the sanitizers also end with status 1
        QVERIFY(!QFile::exists(shell.pidFilePath()));
        QCOMPARE(shell.fakeArguments()->toVariantList(), QVariantList{ "--refresh" });
    }
};

QTEST_GUILESS_MAIN(TestShellRun)
#include "tst_shell_run.moc"

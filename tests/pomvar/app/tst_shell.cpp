// The real pomvar program in a copied install layout, with the fake runtime server in place of
// its own: help and version, the single-instance PID file over a run and its ends, the arguments
// the server gets, and the wait for the server's port.
#include "InstallLayout.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>

using pomvar::test::InstallLayout;

namespace {

constexpr int kUpMs = 60000;

const QByteArray kHelp = "Pomvar for Mac: the customizable app launcher for macOS\n\n"
                         "usage: pomvar [options]\n"
                         "options:\n"
                         "  --clear-recent\n      clear the recent apps menu\n"
                         "  --refresh\n      refresh the pomvar\n"
                         "  --welcome\n      show welcome dialog at startup\n"
                         "  -h, --help\n      show this help message and exit\n"
                         "  --version\n      show version information and exit\n\n";

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Starts pomvar and waits until it is connected to the (fake) server.
std::unique_ptr<QProcess> startConnected(InstallLayout& shell, const QStringList& arguments = {})
{
    auto pomvar = shell.start(arguments);
    for (int waited = 0; waited < kUpMs && !InstallLayout::isConnectedToServer(*pomvar);
         waited += 50)
        QTest::qWait(50);
    return pomvar;
}

void stop(QProcess& process, int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    process.waitForFinished(kUpMs);
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
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("--help") << QStringList{ "--help" } << false << kHelp;
        QTest::newRow("--version")
            << QStringList{ "--version" } << false << QByteArray("Pomvar for Mac version 0.1.0\n");
        // Only the file's presence counts, not the number in it; it wins over every option.
        QTest::newRow("PID file, --help") << QStringList{ "--help" } << true
                                          << QByteArray("Pomvar for Mac is already running.\n");
        QTest::newRow("PID file, no options")
            << QStringList{} << true << QByteArray("Pomvar for Mac is already running.\n");
    }
    void printsAndExitsWithoutStartingTheServer()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, pidFilePresent);
        QFETCH(QByteArray, expected);
        InstallLayout shell;
        QVERIFY(shell.isValid());
        if (pidFilePresent) {
            QVERIFY(QDir().mkpath(QFileInfo(shell.pidFilePath()).path()));
            QFile pid(shell.pidFilePath());
            QVERIFY(pid.open(QIODevice::WriteOnly) && pid.write("999999999") == 9);
        }
        const auto outcome = shell.run(arguments);
        QVERIFY(outcome.exitedWith(0));
        QCOMPARE(outcome.out, expected);
        QCOMPARE(outcome.err, QByteArray());
        QVERIFY(!shell.fakeArguments());
        QCOMPARE(QFile::exists(shell.pidFilePath()), pidFilePresent);
    }

    void helpInATerminalIsBold()
    {
        InstallLayout shell;
        QVERIFY(shell.isValid());
        // script(1) gives the program a terminal for its standard output.
        const auto outcome = shell.runInTerminal({ "--help" });
        QVERIFY(outcome.exitedWith(0));
        QVERIFY2(outcome.out.contains("\x1b[1musage:\x1b[0m pomvar"), outcome.out.constData());
    }

    void signalsEndARun_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("handled");
        QTest::newRow("SIGTERM") << int(SIGTERM) << true;
        QTest::newRow("SIGINT") << int(SIGINT) << true;
        QTest::newRow("SIGTRAP") << int(SIGTRAP) << true;
        QTest::newRow("SIGKILL") << int(SIGKILL) << false;
    }
    void signalsEndARun()
    {
        QFETCH(int, signal);
        QFETCH(bool, handled);
        InstallLayout shell;
        QVERIFY(shell.isValid());
        auto first = startConnected(shell);
        QVERIFY(InstallLayout::isConnectedToServer(*first));
        // The process number alone, no line break.
        const QByteArray pid = QByteArray::number(first->processId());
        QCOMPARE(readFile(shell.pidFilePath()), pid);
        stop(*first, signal);
        QCOMPARE(first->readAllStandardOutput(), QByteArray());
        if (!handled) {
            // The PID file stays behind and refuses the next start.
            QCOMPARE(readFile(shell.pidFilePath()), pid);
            const auto second = shell.run({});
            QVERIFY(second.exitedWith(0));
            QCOMPARE(second.out, QByteArray("Pomvar for Mac is already running.\n"));
            return;
        }
        QVERIFY(first->exitStatus() == QProcess::NormalExit && first->exitCode() == 1);
        QVERIFY(!QFile::exists(shell.pidFilePath()));
        auto second = startConnected(shell);
        QCOMPARE(readFile(shell.pidFilePath()), QByteArray::number(second->processId()));
        stop(*second, SIGTERM);
    }

    void aServerThatListensLateIsWaitedForAndGetsTheOptions()
    {
        InstallLayout shell;
        QVERIFY(shell.isValid());
        shell.writeFakeScript(R"({"listenDelayMs": 1500})");
        // Had the front end not waited, its connection would have been refused and it would
        // have ended with status 1.
        auto pomvar = startConnected(shell, { "--welcome", "--refresh" });
        QVERIFY(InstallLayout::isConnectedToServer(*pomvar));
        QCOMPARE(shell.fakeArguments()->toVariantList(),
                 (QVariantList{ "--refresh", "--welcome" }));
        stop(*pomvar, SIGTERM);
    }

    void aProbeThatCannotBeReadEndsTheStartWithStatusOne()
    {
        InstallLayout shell;
        QVERIFY(shell.isValid());
        // Once the port is really in use, the probe's output is not UTF-8.
        QVERIFY(shell.addToolOnPath("lsof", "/usr/bin/lsof \"$@\" >/dev/null && printf '\\377'\n"));
        const auto outcome = shell.run({ "--refresh" });
        QVERIFY(outcome.exitedWith(1));
        QCOMPARE(outcome.out + outcome.err, QByteArray()); // the sanitizers also end with 1
        QVERIFY(!QFile::exists(shell.pidFilePath()));
        QCOMPARE(shell.fakeArguments()->toVariantList(), QVariantList{ "--refresh" });
    }
};

QTEST_GUILESS_MAIN(TestShell)
#include "tst_shell.moc"

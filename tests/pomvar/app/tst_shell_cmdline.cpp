// The real pomvar program with options that end it before the runtime server is started:
// help, version and the single-instance guard.
#include "ShellHarness.h"

#include <QDir>
#include <QFile>
#include <QTest>

using pomvar::test::ShellHarness;

namespace {

const QByteArray kHelp = "Pomvar for Mac: the customizable app launcher for macOS\n"
                         "\n"
                         "usage: pomvar [options]\n"
                         "options:\n"
                         "  --clear-recent\n"
                         "      clear the recent apps menu\n"
                         "  --refresh\n"
                         "      refresh the pomvar\n"
                         "  --welcome\n"
                         "      show welcome dialog at startup\n"
                         "  -h, --help\n"
                         "      show this help message and exit\n"
                         "  --version\n"
                         "      show version information and exit\n"
                         "\n";

bool writePidFile(const ShellHarness& shell, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(shell.pidFilePath()).path());
    QFile file(shell.pidFilePath());
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

class TestShellCmdLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpAndVersionPrintAndExitWithoutStartingTheServer_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("--help") << QStringList{ "--help" } << kHelp;
        QTest::newRow("-h") << QStringList{ "-h" } << kHelp;
        QTest::newRow("--version")
            << QStringList{ "--version" } << QByteArray("Pomvar for Mac version 0.1.0\n");
        QTest::newRow("--version --help") << QStringList{ "--version", "--help" } << kHelp;
        QTest::newRow("--refresh -h") << QStringList{ "--refresh", "-h" } << kHelp;
        QTest::newRow("help after a plain word") << QStringList{ "word", "--help" } << kHelp;
    }

    void helpAndVersionPrintAndExitWithoutStartingTheServer()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, expected);
        ShellHarness shell;
        QVERIFY(shell.isValid());

        const auto outcome = shell.run(arguments);

        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitStatus, QProcess::NormalExit);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.out, expected);
        QCOMPARE(outcome.err, QByteArray());
        QVERIFY(!shell.fakeArguments());
        QVERIFY(!QFile::exists(shell.pidFilePath()));
    }

    void aPresentPidFileRefusesTheStart_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no options") << QStringList{};
        QTest::newRow("--help") << QStringList{ "--help" };
        QTest::newRow("--version") << QStringList{ "--version" };
        QTest::newRow("--refresh") << QStringList{ "--refresh" };
    }

    void aPresentPidFileRefusesTheStart()
    {
        QFETCH(QStringList, arguments);
        ShellHarness shell;
        QVERIFY(shell.isValid());
        // Only the file's presence counts, not the number in it.
        QVERIFY(writePidFile(shell, "999999999"));

        const auto outcome = shell.run(arguments);

        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitStatus, QProcess::NormalExit);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.out, QByteArray("Pomvar for Mac is already running.\n"));
        QVERIFY(!shell.fakeArguments());
        QVERIFY(QFile::exists(shell.pidFilePath()));
    }
};

QTEST_GUILESS_MAIN(TestShellCmdLine)
#include "tst_shell_cmdline.moc"

// The real pomvar program in a copied install layout, with the fake runtime server in place of
// its own: help and version, the single-instance PID file, the arguments the server gets, and the
// wait for the server's port, its probe's output that is not UTF-8 ending the start. In-process:
// the command line, the platform under Wayland and the PID file's place.
#include "InstallLayout.h"
#include "TestDesktop.h"
#include "app/CommandLine.h"
#include "app/PidFile.h"
#include "app/PlatformChoice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace pomvar;
using namespace pomvar::test;

namespace {

const QString kPid = "pomvar/pomvar.pid";
const QByteArray kRunning = "Pomvar for Linux is already running.\n";
const QByteArray kHelp = "Pomvar for Linux: the customizable app launcher for Linux\n\n"
                         "usage: pomvar [options]\noptions:\n"
                         "  --clear-recent\n      clear the recent apps menu\n"
                         "  --refresh\n      refresh the pomvar\n"
                         "  --welcome\n      show welcome dialog at startup\n"
                         "  -h, --help\n      show this help message and exit\n"
                         "  --version\n      show version information and exit\n\n";

} // namespace

class TestShell : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

private Q_SLOTS:
    void argumentsAndEnvironmentGiveActionServerArgumentsAndPlatform()
    {
        using A = CmdLine::Action;
        // The arguments, the action, the server's arguments; separated by spaces.
        const std::tuple<QString, A, QString> cases[] = {
            { "", A::run, "" },
            // In a fixed order, each once; plain words are skipped.
            { "--welcome --refresh word - --clear-recent --refresh",
              A::run,
              "--clear-recent --refresh --welcome" },
            // Reading stops at an unknown long or short flag, and at "---".
            { "--welcome --bogus --refresh", A::run, "--welcome" },
            { "-v --refresh", A::run, "" },
            { "--welcome --- --refresh -h", A::run, "--welcome" },
            // Help wins over version; a group of short names is read up to its fault.
            { "--version -h", A::help, "" },
            { "-hx", A::help, "" },
            { "--refresh --version", A::version, "" },
        };
        const auto words = [](const QString& text) {
            std::vector<std::string> split;
            for (const QString& word : text.split(' ', Qt::SkipEmptyParts))
                split.push_back(word.toStdString());
            return split;
        };
        for (const auto& [arguments, action, rtArgs] : cases) {
            const CmdLine cmdLine =
                pomvar::readCmdLine(words("/usr/bin/pomvar " + arguments), false);
            QVERIFY2(cmdLine.action == action && cmdLine.rtArgs == words(rtArgs),
                     qPrintable(arguments));
        }
        // Under Wayland, XWayland when there is one.
        const std::pair<QString, std::string> platforms[] = {
            { "WAYLAND_DISPLAY=wayland-0 DISPLAY=:1", "xcb" },
            { "XDG_SESSION_TYPE=wayland DISPLAY=:1", "xcb" },
            { "WAYLAND_DISPLAY=wayland-0", "" }, // natively: no X display
            { "DISPLAY=:0 XDG_SESSION_TYPE=x11", "" },
            // The user's choice stands.
            { "WAYLAND_DISPLAY=wayland-0 DISPLAY=:1 QT_QPA_PLATFORM=wayland", "" },
        };
        for (const auto& [env, platform] : platforms)
            QCOMPARE(pomvar::PlatformChoice::platform([&env = env](const char* name) {
                         for (const QString& pair : env.split(' '))
                             if (pair.section('=', 0, 0) == QLatin1String(name))
                                 return pair.section('=', 1).toStdString();
                         return std::string();
                     }),
                     platform);
    }
    void pidFile()
    {
        // In the runtime folder, else in the cache folder; the folder private to the user.
        qputenv("XDG_RUNTIME_DIR", m_dir.path().toUtf8());
        const QString path = m_dir.filePath("pomvar/pomvar.pid");
        QCOMPARE(QString::fromStdString(PidFile::getPidFilePath()), path);
        // Its folder is made, nothing left over from the atomic write (the number in it and its
        // deletion at each end: e2e_ends).
        PidFile::create();
        QCOMPARE(QDir(m_dir.filePath("pomvar")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList{ "pomvar.pid" });
        QCOMPARE(QFile::permissions(m_dir.filePath("pomvar")), QFileDevice::Permissions(0x7700));
        // The signal handler deletes the file at the path taken beforehand, once, and only a file
        // this process wrote.
        PidFile::create();
        PidFile::prepareSignalHandlerPath();
        qputenv("XDG_RUNTIME_DIR", m_dir.filePath("absent").toUtf8());
        PidFile::deleteFromSignalHandler();
        QVERIFY(!QFile::exists(path));
        QVERIFY(TestDesktop::write(path, "1"));
        PidFile::deleteFromSignalHandler();
        QVERIFY(QFile::exists(path));
        // A missing runtime folder is not created.
        PidFile::create();
        QVERIFY(!QFile::exists(m_dir.filePath("absent")));
        qunsetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_CACHE_HOME", m_dir.path().toUtf8());
        QCOMPARE(QString::fromStdString(PidFile::getPidFilePath()), path);
        qunsetenv("XDG_CACHE_HOME");
    }

    void printsAndExitsWithoutStartingTheServer()
    {
        // The arguments, a PID file there, a terminal, what is printed. Only a terminal gets the
        // headings in bold; only the PID file's presence counts, and it wins over every option
        // (without options, beside a running Pomvar: e2e_installed).
        const QByteArray bold = QByteArray(kHelp)
                                    .replace("usage:", "\x1b[1musage:\x1b[0m")
                                    .replace("options:", "\x1b[1moptions:\x1b[0m");
        const std::tuple<QStringList, bool, bool, QByteArray> cases[] = {
            { { "--help" }, false, false, kHelp },
            { { "--help" }, false, true, bold },
            { { "--version" }, false, false, "Pomvar for Linux version 0.1.0\n" },
            { { "--help" }, true, false, kRunning },
        };
        for (const auto& [arguments, pidFilePresent, terminal, expected] : cases) {
            InstallLayout shell; // a layout not made fails the run
            QVERIFY(!pidFilePresent || shell.write(kPid, "999999999"));
            auto outcome = shell.run(arguments, terminal);
            QVERIFY(outcome.exitedWith(0));
            QCOMPARE(outcome.out.replace("\r\n", "\n"), expected); // a terminal's line ends
            QCOMPARE(outcome.err, QByteArray());
            QCOMPARE(shell.read("fake/argv.json"), "<missing>");
            QCOMPARE(shell.read(kPid), pidFilePresent ? "999999999" : "<missing>");
        }
    }

    void aServerThatListensLateIsWaitedForAndGetsTheOptions()
    {
        InstallLayout shell;
        QProcessEnvironment environment = shell.environment();
        environment.insert("POMVAR_FAKE_LISTEN_DELAY_MS", "1500");
        // Had the front end not waited, its connection would have been refused and it would
        // have ended with status 1.
        auto pomvar = shell.start({ "--welcome", "--refresh" }, environment);
        QVERIFY(InstallLayout::isConnectedToServer(*pomvar));
        QCOMPARE(shell.read("fake/argv.json"), "[\"--refresh\",\"--welcome\"]\n");
        ::kill(static_cast<pid_t>(pomvar->processId()), SIGTERM);
        pomvar->waitForFinished(60000);
    }

    // Once the port is really in use, the probe's output is not UTF-8. (A refused connection:
    // e2e_ends and tst_runtimelink.)
    void anUnreadableProbeEndsTheStartWithStatusOne()
    {
        InstallLayout shell;
        QVERIFY(shell.write(
            "tools/lsof", "#!/bin/sh\n/usr/bin/lsof \"$@\" >/dev/null && printf '\\377'\n", true));
        const auto outcome = shell.run({ "--refresh" });
        QVERIFY(outcome.exitedWith(1));
        // The sanitizers also end with 1.
        QVERIFY2(!outcome.err.contains("Sanitizer") && !outcome.err.contains("runtime error"),
                 outcome.err.constData());
        QCOMPARE(shell.read(kPid), "<missing>");
    }
};

QTEST_GUILESS_MAIN(TestShell)
#include "tst_shell.moc"

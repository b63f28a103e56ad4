// The command line, the platform under Wayland, the PID file and the detached launch. The shell
// runner behind the readiness probe is checked in the program's runs (tst_shell): its output
// read, a failure retried, output that is not UTF-8 ending the start.
#include "TestDesktop.h"
#include "app/CommandLine.h"
#include "app/DetachedProcess.h"
#include "app/PidFile.h"
#include "app/PlatformChoice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

using pomvar::CmdLine;
using pomvar::PidFile;
using pomvar::test::TestDesktop;

class TestShellParts : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

private Q_SLOTS:
    void argumentsGiveActionAndServerArguments()
    {
        using A = CmdLine::Action;
        using Args = std::vector<std::string>;
        const struct
        {
            Args arguments;
            A action;
            Args rtArgs;
        } cases[] = {
            { {}, A::run, {} },
            // In a fixed order, each once; plain words are skipped.
            { { "--welcome", "--refresh", "word", "-", "--clear-recent", "--refresh" },
              A::run,
              { "--clear-recent", "--refresh", "--welcome" } },
            // Reading stops at an unknown long or short flag, and at "---".
            { { "--welcome", "--bogus", "--refresh" }, A::run, { "--welcome" } },
            { { "-v", "--refresh" }, A::run, {} },
            { { "--welcome", "---", "--refresh", "-h" }, A::run, { "--welcome" } },
            // Help wins over version; a group of short names is read up to its fault.
            { { "--version", "-h" }, A::help, {} },
            { { "-hx" }, A::help, {} },
            { { "--refresh", "--version" }, A::version, {} },
        };
        for (std::size_t row = 0; row < std::size(cases); ++row) {
            auto [arguments, action, rtArgs] = cases[row];
            arguments.insert(arguments.begin(), "/usr/bin/pomvar");
            const CmdLine cmdLine = pomvar::readCmdLine(arguments, false);
            QVERIFY2(cmdLine.action == action && cmdLine.rtArgs == rtArgs,
                     ("case " + std::to_string(row)).c_str());
        }
    }
    void platformUnderWaylandIsXWaylandWhenThereIsOne()
    {
        using Env = std::map<std::string, std::string>;
        const std::pair<Env, std::string> cases[] = {
            { { { "WAYLAND_DISPLAY", "wayland-0" }, { "DISPLAY", ":1" } }, "xcb" },
            { { { "XDG_SESSION_TYPE", "wayland" }, { "DISPLAY", ":1" } }, "xcb" },
            { { { "WAYLAND_DISPLAY", "wayland-0" } }, "" }, // natively: no X display
            { { { "DISPLAY", ":0" }, { "XDG_SESSION_TYPE", "x11" } }, "" },
            // The user's choice stands.
            { { { "WAYLAND_DISPLAY", "wayland-0" },
                { "DISPLAY", ":1" },
                { "QT_QPA_PLATFORM", "wayland" } },
              "" },
        };
        for (const auto& [env, platform] : cases)
            QCOMPARE(pomvar::PlatformChoice::platform([&env = env](const char* name) {
                         const auto value = env.find(name);
                         return value == env.end() ? std::string() : value->second;
                     }),
                     platform);
    }
    void pidFile()
    {
        qputenv("XDG_CACHE_HOME", m_dir.path().toUtf8());
        const QString path = m_dir.filePath("Pomvar4Mac/pomvar.pid");
        QCOMPARE(QString::fromStdString(PidFile::getPidFilePath()), path);
        // Its folder is made, nothing left over from the atomic write (the number in it and its
        // deletion at a signal: tst_shell).
        PidFile::create();
        QCOMPARE(
            QDir(m_dir.filePath("Pomvar4Mac")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
            QStringList{ "pomvar.pid" });
        PidFile::deleteFile();
        QVERIFY(!QFile::exists(path));
        // The signal handler deletes the file at the path taken beforehand.
        PidFile::create();
        PidFile::prepareSignalHandlerPath();
        qputenv("XDG_CACHE_HOME", m_dir.filePath("absent").toUtf8());
        PidFile::deleteFromSignalHandler();
        QVERIFY(!QFile::exists(path));
        // A missing cache folder is not created.
        PidFile::create();
        QVERIFY(!QFile::exists(m_dir.filePath("absent")));
        qunsetenv("XDG_CACHE_HOME");
        QCOMPARE(PidFile::getPidFilePath(),
                 QDir::homePath().toStdString() + "/.cache/Pomvar4Mac/pomvar.pid");
    }

    void aDetachedProgramIsNotOurChildAndGetsItsArguments()
    {
        const QString out = m_dir.filePath("detached.txt");
        qputenv("POMVAR_DETACHED_CHECK", "inherited");
        const std::string script = "printf '%s|' \"$@\" \"$POMVAR_DETACHED_CHECK\" \"$PWD\" "
                                   "\"$PPID\" > \"$0.tmp\" && mv \"$0.tmp\" \"$0\"";
        QCOMPARE(pomvar::startDetached("/bin/sh", { "-c", script, out.toStdString(), "a", "b c" }),
                 std::error_code());
        QTRY_VERIFY(QFile::exists(out));
        const QList<QByteArray> fields = TestDesktop::read(out).split('|');
        QCOMPARE(fields.mid(0, 4),
                 (QList<QByteArray>{ "a", "b c", "inherited", QDir::currentPath().toUtf8() }));
        QVERIFY(fields[4] != QByteArray::number(::getpid()));
        // Nothing of ours is left to reap.
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
        QCOMPARE(errno, ECHILD);
        QCOMPARE(pomvar::startDetached(m_dir.filePath("none").toStdString(), {}),
                 std::make_error_code(std::errc::no_such_file_or_directory));
    }
};

QTEST_GUILESS_MAIN(TestShellParts)
#include "tst_shellparts.moc"

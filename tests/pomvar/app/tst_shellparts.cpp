// The PID file, the shell runner behind the readiness probe, and the detached launch.
#include "app/DetachedProcess.h"
#include "app/Execute.h"
#include "app/PidFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

using pomvar::CommandError;
using pomvar::PidFile;

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

class TestShellParts : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

private Q_SLOTS:
    void pidFile()
    {
        qputenv("XDG_CACHE_HOME", m_dir.path().toUtf8());
        const QString path = m_dir.filePath("Pomvar4Mac/pomvar.pid");
        QCOMPARE(QString::fromStdString(PidFile::getPidFilePath()), path);
        // Its folder is made; the bare number is written, nothing left over from the atomic write.
        PidFile::create();
        QCOMPARE(readFile(path), QByteArray::number(::getpid()));
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

    void executeGivesStandardOutputOrItsFault()
    {
        using K = CommandError::Kind;
        const std::tuple<std::string, std::optional<K>, std::string> cases[] = {
            { "printf 'one\\ntwo'; echo noise >&2", std::nullopt, "one\ntwo" },
            { "printf partial; exit 3", K::commandFailed, "partial" },
            // Output that is not UTF-8 wins over the status.
            { "printf '\\300\\200'; exit 1", K::invalidData, "" },
        };
        for (const auto& [command, fault, output] : cases) {
            std::optional<K> got;
            std::string out;
            try {
                out = pomvar::execute(command);
            } catch (const CommandError& error) {
                got = error.kind();
                out = error.output();
            }
            QVERIFY2(got == fault && out == output, command.c_str());
        }
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
        const QList<QByteArray> fields = readFile(out).split('|');
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

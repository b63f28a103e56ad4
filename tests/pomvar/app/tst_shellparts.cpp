// The PID file, the shell runner behind the readiness probe, and the detached launch.
#include "app/DetachedProcess.h"
#include "app/Execute.h"
#include "app/PidFile.h"

#include <QDir>
#include <QFile>
#include <QTcpServer>
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

std::optional<CommandError::Kind> failureOf(const std::string& command, std::string* output)
{
    try {
        *output = pomvar::execute(command);
    } catch (const CommandError& error) {
        *output = error.output();
        return error.kind();
    }
    return std::nullopt;
}

} // namespace

class TestShellParts : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QByteArray m_savedCacheHome;

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_savedCacheHome = qgetenv("XDG_CACHE_HOME");
        QVERIFY(QDir(m_dir.path()).mkpath("cache"));
        qputenv("XDG_CACHE_HOME", m_dir.filePath("cache").toUtf8());
    }

    void cleanup()
    {
        qputenv("XDG_CACHE_HOME", m_savedCacheHome);
        QDir(m_dir.filePath("cache")).removeRecursively();
    }

    void thePidFileLiesInTheCacheFolder()
    {
        QCOMPARE(PidFile::getPidFilePath(),
                 m_dir.filePath("cache/Pomvar4Mac/pomvar.pid").toStdString());
        qunsetenv("XDG_CACHE_HOME");
        QCOMPARE(PidFile::getPidFilePath(),
                 QDir::homePath().toStdString() + "/.cache/Pomvar4Mac/pomvar.pid");
    }

    void createMakesTheProgramFolderAndWritesTheBareNumber()
    {
        PidFile::create();
        const QString path = QString::fromStdString(PidFile::getPidFilePath());
        QCOMPARE(readFile(path), QByteArray::number(::getpid()));
        // Nothing left over from the atomic write.
        QCOMPARE(QDir(m_dir.filePath("cache/Pomvar4Mac"))
                     .entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList{ "pomvar.pid" });
    }

    void createReplacesAnOldFile()
    {
        QVERIFY(QDir(m_dir.path()).mkpath("cache/Pomvar4Mac"));
        QFile old(m_dir.filePath("cache/Pomvar4Mac/pomvar.pid"));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("1234567890\n");
        old.close();
        PidFile::create();
        QCOMPARE(readFile(old.fileName()), QByteArray::number(::getpid()));
    }

    void aMissingCacheFolderIsNotCreated()
    {
        qputenv("XDG_CACHE_HOME", m_dir.filePath("cache/absent").toUtf8());
        PidFile::create();
        QVERIFY(!QFile::exists(m_dir.filePath("cache/absent")));
    }

    void deleteRemovesTheFileAndToleratesItsAbsence()
    {
        PidFile::create();
        const QString path = QString::fromStdString(PidFile::getPidFilePath());
        QVERIFY(QFile::exists(path));
        PidFile::deleteFile();
        QVERIFY(!QFile::exists(path));
        PidFile::deleteFile();
        QVERIFY(QDir(m_dir.filePath("cache/Pomvar4Mac")).exists());
    }

    void theSignalPathUsesThePathTakenBeforehand()
    {
        PidFile::create();
        const QString path = QString::fromStdString(PidFile::getPidFilePath());
        PidFile::prepareSignalHandlerPath();
        qputenv("XDG_CACHE_HOME", m_dir.filePath("elsewhere").toUtf8());
        PidFile::deleteFromSignalHandler();
        QVERIFY(!QFile::exists(path));
        PidFile::deleteFromSignalHandler();
    }

    void executeReturnsStandardOutputOnly()
    {
        std::string output;
        QCOMPARE(failureOf("printf 'one\\ntwo'; echo noise >&2", &output), std::nullopt);
        QCOMPARE(output, "one\ntwo");
        QCOMPARE(failureOf("true", &output), std::nullopt);
        QCOMPARE(output, "");
        QCOMPARE(failureOf("printf '\\303\\244'", &output), std::nullopt);
        QCOMPARE(output, "\u00e4");
    }

    void aNonZeroStatusIsCommandFailedWithTheOutput()
    {
        std::string output;
        QCOMPARE(failureOf("printf partial; exit 3", &output), CommandError::Kind::commandFailed);
        QCOMPARE(output, "partial");
        QCOMPARE(failureOf("no-such-command-here 2>/dev/null", &output),
                 CommandError::Kind::commandFailed);
        QCOMPARE(output, "");
    }

    void outputThatIsNotUtf8IsInvalidData()
    {
        std::string output;
        QCOMPARE(failureOf("printf '\\377'", &output), CommandError::Kind::invalidData);
        QCOMPARE(failureOf("printf '\\300\\200'; exit 1", &output),
                 CommandError::Kind::invalidData);
    }

    void theProbeTellsAListeningPortFromAFreeOne()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const std::string probe = "lsof -i @localhost:" + std::to_string(server.serverPort());
        std::string output;
        QCOMPARE(failureOf(probe, &output), std::nullopt);
        QVERIFY(!output.empty());
        server.close();
        QCOMPARE(failureOf(probe, &output), CommandError::Kind::commandFailed);
        QCOMPARE(output, "");
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
        QCOMPARE(fields.size(), 6);
        QCOMPARE(fields[0], "a");
        QCOMPARE(fields[1], "b c");
        QCOMPARE(fields[2], "inherited");
        QCOMPARE(fields[3], QDir::currentPath().toUtf8());
        QVERIFY(fields[4] != QByteArray::number(::getpid()));
        // Nothing of ours is left to reap: no zombies.
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
        QCOMPARE(errno, ECHILD);
    }

    void aProgramThatCannotStartIsReported()
    {
        const std::error_code error =
            pomvar::startDetached(m_dir.filePath("none").toStdString(), {});
        QCOMPARE(error, std::make_error_code(std::errc::no_such_file_or_directory));
    }
};

QTEST_GUILESS_MAIN(TestShellParts)
#include "tst_shellparts.moc"

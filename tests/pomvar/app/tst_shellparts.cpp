// The PID file, the shell runner behind the readiness probe, and the detached launch.
#include "app/DetachedProcess.h"
#include "app/Execute.h"
#include "app/PidFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

using pomvar::CommandError;
using pomvar::PidFile;

Q_DECLARE_METATYPE(std::optional<CommandError::Kind>)

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

    QString pidPath() const { return m_dir.filePath("cache/Pomvar4Mac/pomvar.pid"); }

private Q_SLOTS:
    void init()
    {
        QVERIFY(QDir(m_dir.path()).mkpath("cache"));
        qputenv("XDG_CACHE_HOME", m_dir.filePath("cache").toUtf8());
    }
    void cleanup() { QDir(m_dir.filePath("cache")).removeRecursively(); }

    void pidFileHoldsTheBareNumberAndIsReplaced()
    {
        QCOMPARE(QString::fromStdString(PidFile::getPidFilePath()), pidPath());
        QVERIFY(QDir().mkpath(QFileInfo(pidPath()).path()));
        QFile old(pidPath());
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("1234567890\n") > 0);
        old.close();
        PidFile::create();
        QCOMPARE(readFile(pidPath()), QByteArray::number(::getpid()));
        // Nothing left over from the atomic write.
        QCOMPARE(
            QDir(QFileInfo(pidPath()).path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
            QStringList{ "pomvar.pid" });
        PidFile::deleteFile();
        QVERIFY(!QFile::exists(pidPath()));
        PidFile::deleteFile(); // an absent file is fine
    }

    void withoutXdgCacheHomeTheHomeCacheIsUsed()
    {
        qunsetenv("XDG_CACHE_HOME");
        QCOMPARE(PidFile::getPidFilePath(),
                 QDir::homePath().toStdString() + "/.cache/Pomvar4Mac/pomvar.pid");
    }

    void aMissingCacheFolderIsNotCreated()
    {
        qputenv("XDG_CACHE_HOME", m_dir.filePath("cache/absent").toUtf8());
        PidFile::create();
        QVERIFY(!QFile::exists(m_dir.filePath("cache/absent")));
    }

    void theSignalPathUsesThePathTakenBeforehand()
    {
        PidFile::create();
        PidFile::prepareSignalHandlerPath();
        qputenv("XDG_CACHE_HOME", m_dir.filePath("elsewhere").toUtf8());
        PidFile::deleteFromSignalHandler();
        QVERIFY(!QFile::exists(pidPath()));
    }

    void executeGivesStandardOutputOrItsFault_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<std::optional<CommandError::Kind>>("fault");
        QTest::addColumn<QString>("output");
        const std::optional<CommandError::Kind> none;
        QTest::newRow("stdout only") << "printf 'one\\ntwo'; echo noise >&2" << none << "one\ntwo";
        QTest::newRow("UTF-8") << "printf '\\303\\244'" << none << "\u00e4";
        QTest::newRow("status 3") << "printf partial; exit 3"
                                  << std::optional(CommandError::Kind::commandFailed) << "partial";
        QTest::newRow("not UTF-8")
            << "printf '\\377'" << std::optional(CommandError::Kind::invalidData) << "";
        QTest::newRow("not UTF-8 wins over the status")
            << "printf '\\300\\200'; exit 1" << std::optional(CommandError::Kind::invalidData)
            << "";
    }
    void executeGivesStandardOutputOrItsFault()
    {
        QFETCH(QString, command);
        QFETCH(std::optional<CommandError::Kind>, fault);
        QFETCH(QString, output);
        std::optional<CommandError::Kind> got;
        std::string out;
        try {
            out = pomvar::execute(command.toStdString());
        } catch (const CommandError& error) {
            got = error.kind();
            out = error.output();
        }
        QCOMPARE(got, fault);
        QCOMPARE(QString::fromStdString(out), output);
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

#include "InstallLayout.h"

#include "TestDesktop.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <csignal>

namespace pomvar::test {

constexpr int kRunLimitMs = 60000;
const QString kFake = QStringLiteral("libexec/pomvar/pomvarsrv");

InstallLayout::InstallLayout()
{
    const QDir root(m_dir.path());
    m_ready = root.mkpath("bin") && root.mkpath("libexec/pomvar") && root.mkpath("home/.cache") &&
              root.mkpath("fake") &&
              QFile::copy(qEnvironmentVariable("POMVAR_BIN_DIR") + "/pomvar",
                          root.filePath("bin/pomvar")) &&
              QFile::copy(qEnvironmentVariable("POMVAR_TEST_BIN_DIR") + "/pomvar-fakesrv",
                          root.filePath(kFake));
}

InstallLayout::~InstallLayout()
{
    // The fakes are not our children (the front end starts them detached): find them by the
    // program they run, which only this layout holds, and wait until they are gone so that the
    // port is free for the next test.
    const QString fake = QFileInfo(m_dir.filePath(kFake)).canonicalFilePath();
    for (const QString& pid : QDir("/proc").entryList({ "[0-9]*" }, QDir::Dirs)) {
        const QFileInfo exe("/proc/" + pid + "/exe");
        if (exe.symLinkTarget() == fake && ::kill(pid.toInt(), SIGKILL) == 0)
            static_cast<void>(
                QTest::qWaitFor([&] { return !QFileInfo::exists(exe.filePath()); }, 5000));
    }
}

QProcessEnvironment InstallLayout::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name :
         { "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "NO_COLOR" })
        env.remove(name);
    env.insert("HOME", m_dir.filePath("home"));
    env.insert("XDG_RUNTIME_DIR", m_dir.path()); // private to us, as the runtime folder must be
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("POMVAR_FAKE_DIR", m_dir.filePath("fake"));
    env.insert("POMVAR_FAKE_LIFETIME", "60");
    env.insert("PATH", m_dir.filePath("tools") + ":" + env.value("PATH"));
    return env;
}

ChildOutcome InstallLayout::run(const QStringList& arguments, bool terminal)
{
    const QString pomvar = m_dir.filePath("bin/pomvar");
    const QStringList script{ "-qec", (QStringList{ pomvar } + arguments).join(' '), "/dev/null" };
    return terminal ? runChild("script", script, kRunLimitMs, environment())
                    : runChild(pomvar, arguments, kRunLimitMs, environment());
}

std::unique_ptr<QProcess> InstallLayout::start(const QStringList& arguments,
                                               const std::optional<QProcessEnvironment>& session)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(session.value_or(environment()));
    process->start(m_dir.filePath("bin/pomvar"), arguments);
    process->waitForStarted();
    // Its caller tells a failure by isConnectedToServer().
    static_cast<void>(QTest::qWaitFor([&] { return isConnectedToServer(*process); }, kRunLimitMs));
    return process;
}

bool InstallLayout::isConnectedToServer(const QProcess& process)
{
    const QString pid = QString::number(process.processId());
    const QStringList lsof{ "-a", "-p", pid, "-iTCP@localhost:50818", "-sTCP:ESTABLISHED", "-t" };
    return runChild("lsof", lsof).out.trimmed() == pid.toUtf8();
}

QByteArray InstallLayout::read(const QString& path) const
{
    const QString file = m_dir.filePath(path);
    return QFile::exists(file) ? TestDesktop::read(file) : QByteArray("<missing>");
}

bool InstallLayout::write(const QString& path, const QByteArray& content, bool executable)
{
    return TestDesktop::write(m_dir.filePath(path), content, executable);
}

} // namespace pomvar::test

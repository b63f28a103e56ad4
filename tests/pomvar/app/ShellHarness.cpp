#include "ShellHarness.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTest>

#include <csignal>
#include <sys/types.h>

namespace pomvar::test {

namespace {

constexpr int kRunLimitMs = 60000;

bool copyExecutable(const QString& from, const QString& to)
{
    return QFile::copy(from, to) &&
           QFile::setPermissions(to, QFile::permissions(to) | QFile::ExeOwner | QFile::ExeUser);
}

} // namespace

ShellHarness::ShellHarness()
{
    const QDir root(m_dir.path());
    const QString binDir = qEnvironmentVariable("POMVAR_BIN_DIR");
    const QString testBinDir = qEnvironmentVariable("POMVAR_TEST_BIN_DIR");
    m_ready = m_dir.isValid() && root.mkpath("bin") && root.mkpath("libexec/pomvar") &&
              root.mkpath("home/.cache") && root.mkpath("home/.config") &&
              root.mkpath("home/.local/share") && root.mkpath("home/.local/state") &&
              root.mkpath("home/runtime") && root.mkpath("fake") &&
              QFile::setPermissions(root.filePath("home/runtime"),
                                    QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner) &&
              copyExecutable(binDir + "/pomvar", root.filePath("bin/pomvar")) &&
              copyExecutable(testBinDir + "/pomvar-fakesrv", fakeServerPath());
}

ShellHarness::~ShellHarness()
{
    killFakeServers();
}

QString ShellHarness::pidFilePath() const
{
    return m_dir.filePath("home/.cache/Pomvar4Mac/pomvar.pid");
}

QString ShellHarness::fakeDir() const
{
    return m_dir.filePath("fake");
}

QString ShellHarness::fakeServerPath() const
{
    return m_dir.filePath("libexec/pomvar/pomvarsrv");
}

QProcessEnvironment ShellHarness::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    const QString home = m_dir.filePath("home");
    env.insert("HOME", home);
    env.insert("XDG_CACHE_HOME", home + "/.cache");
    env.insert("XDG_CONFIG_HOME", home + "/.config");
    env.insert("XDG_DATA_HOME", home + "/.local/share");
    env.insert("XDG_STATE_HOME", home + "/.local/state");
    env.insert("XDG_RUNTIME_DIR", home + "/runtime");
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("POMVAR_FAKE_DIR", fakeDir());
    env.insert("POMVAR_FAKE_LIFETIME", "60");
    env.remove("NO_COLOR");
    if (m_toolsOnPath)
        env.insert("PATH", m_dir.filePath("tools") + ":" + env.value("PATH"));
    return env;
}

ShellHarness::Outcome ShellHarness::run(const QStringList& arguments)
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(m_dir.filePath("bin/pomvar"), arguments);
    Outcome outcome;
    outcome.finished = process.waitForFinished(kRunLimitMs);
    if (!outcome.finished) {
        process.kill();
        process.waitForFinished();
    }
    outcome.exitStatus = process.exitStatus();
    outcome.exitCode = process.exitCode();
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

std::unique_ptr<QProcess> ShellHarness::start(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->start(m_dir.filePath("bin/pomvar"), arguments);
    process->waitForStarted();
    return process;
}

bool ShellHarness::isConnectedToServer(const QProcess& process)
{
    QProcess lsof;
    lsof.start("lsof",
               { "-a",
                 "-p",
                 QString::number(process.processId()),
                 "-iTCP@localhost:50818",
                 "-sTCP:ESTABLISHED",
                 "-t" });
    lsof.waitForFinished();
    return lsof.readAllStandardOutput().trimmed() == QByteArray::number(process.processId());
}

std::optional<QJsonArray> ShellHarness::fakeArguments() const
{
    QFile file(fakeDir() + "/argv.json");
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return QJsonDocument::fromJson(file.readAll()).array();
}

void ShellHarness::writeFakeScript(const QByteArray& json) const
{
    QFile file(fakeDir() + "/script.json");
    if (file.open(QIODevice::WriteOnly))
        file.write(json);
}

bool ShellHarness::addToolOnPath(const QString& name, const QByteArray& body)
{
    QDir(m_dir.path()).mkpath("tools");
    QFile tool(m_dir.filePath("tools/" + name));
    if (!tool.open(QIODevice::WriteOnly) || tool.write("#!/bin/sh\n" + body) < 0)
        return false;
    tool.close();
    m_toolsOnPath = true;
    return tool.setPermissions(tool.permissions() | QFile::ExeOwner);
}

int ShellHarness::killFakeServers() const
{
    // The fakes are not our children (the front end starts them detached): find them by the
    // program they run, which only this layout holds.
    const QString fake = QFileInfo(fakeServerPath()).canonicalFilePath();
    int killed = 0;
    const QStringList pids = QDir("/proc").entryList({ "[0-9]*" }, QDir::Dirs);
    for (const QString& pid : pids) {
        if (QFileInfo("/proc/" + pid + "/exe").symLinkTarget() != fake)
            continue;
        if (::kill(static_cast<pid_t>(pid.toInt()), SIGKILL) == 0)
            ++killed;
    }
    return killed;
}

} // namespace pomvar::test

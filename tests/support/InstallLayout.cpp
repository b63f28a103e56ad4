#include "InstallLayout.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QThread>

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

InstallLayout::InstallLayout()
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

InstallLayout::~InstallLayout()
{
    killFakeServers();
}

QString InstallLayout::pidFilePath() const
{
    return m_dir.filePath("home/.cache/Pomvar4Mac/pomvar.pid");
}

QString InstallLayout::fakeDir() const
{
    return m_dir.filePath("fake");
}

QString InstallLayout::fakeServerPath() const
{
    return m_dir.filePath("libexec/pomvar/pomvarsrv");
}

QProcessEnvironment InstallLayout::environment() const
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

ChildOutcome InstallLayout::run(const QStringList& arguments)
{
    return runChild(m_dir.filePath("bin/pomvar"), arguments, kRunLimitMs, environment());
}

ChildOutcome InstallLayout::runInTerminal(const QStringList& arguments)
{
    const QString command = (QStringList{ m_dir.filePath("bin/pomvar") } + arguments).join(' ');
    return runChild("script", { "-qec", command, "/dev/null" }, kRunLimitMs, environment());
}

std::unique_ptr<QProcess> InstallLayout::start(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->start(m_dir.filePath("bin/pomvar"), arguments);
    process->waitForStarted();
    return process;
}

bool InstallLayout::isConnectedToServer(const QProcess& process)
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

std::optional<QJsonArray> InstallLayout::fakeArguments() const
{
    QFile file(fakeDir() + "/argv.json");
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return QJsonDocument::fromJson(file.readAll()).array();
}

void InstallLayout::writeFakeScript(const QByteArray& json) const
{
    QFile file(fakeDir() + "/script.json");
    if (file.open(QIODevice::WriteOnly))
        file.write(json);
}

bool InstallLayout::addToolOnPath(const QString& name, const QByteArray& body)
{
    QDir(m_dir.path()).mkpath("tools");
    QFile tool(m_dir.filePath("tools/" + name));
    if (!tool.open(QIODevice::WriteOnly) || tool.write("#!/bin/sh\n" + body) < 0)
        return false;
    tool.close();
    m_toolsOnPath = true;
    return tool.setPermissions(tool.permissions() | QFile::ExeOwner);
}

int InstallLayout::killFakeServers() const
{
    // The fakes are not our children (the front end starts them detached): find them by the
    // program they run, which only this layout holds, and wait until they are gone so that the
    // port is free for the next test.
    const QString fake = QFileInfo(fakeServerPath()).canonicalFilePath();
    QStringList killed;
    for (const QString& pid : QDir("/proc").entryList({ "[0-9]*" }, QDir::Dirs)) {
        if (QFileInfo("/proc/" + pid + "/exe").symLinkTarget() == fake &&
            ::kill(static_cast<pid_t>(pid.toInt()), SIGKILL) == 0)
            killed << pid;
    }
    for (const QString& pid : killed) {
        for (int waited = 0; waited < 5000 && QFileInfo("/proc/" + pid + "/exe").exists();
             waited += 10)
            QThread::msleep(10);
    }
    return int(killed.size());
}

} // namespace pomvar::test

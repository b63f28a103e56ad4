#include "pomvarsrv/app/Updates.h"

#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/catalogue/FrontEndProgram.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"
#include "wire/UserPaths.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QVersionNumber>

namespace pomvar::srv {

namespace {

// A package manager replaces several files one after another: look once they are all in.
constexpr int kSettleMs = 300;

QString pidFile()
{
    return QString::fromStdString(paths::pidFile());
}

} // namespace

Updates::Updates(QString installDir, QString running, QObject* parent)
    : QObject(parent)
    , m_dir(std::move(installDir))
    , m_running(std::move(running))
    , m_frontEnd(pidFile(), frontEndProgram())
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    connect(&m_settle, &QTimer::timeout, this, &Updates::noticeChange);
    connect(&m_frontEnd, &FrontEndExit::gone, this, &Updates::restartDue);
    if (m_dir.isEmpty())
        return;
    m_seen = installed();
    connect(
        &m_watcher, &QFileSystemWatcher::directoryChanged, &m_settle, qOverload<>(&QTimer::start));
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settle, qOverload<>(&QTimer::start));
    watch();
}

QString Updates::frontEndProgram() const
{
    return QDir::cleanPath(m_dir + u'/' + QString::fromLatin1(paths::frontEndFromServerDir));
}

QString Updates::versionFile() const
{
    return m_dir + u'/' + QString::fromLatin1(paths::versionFile);
}

QString Updates::installed() const
{
    if (m_dir.isEmpty())
        return {};
    QFile file(versionFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readLine()).trimmed();
}

bool Updates::isNewerInstalled() const
{
    const QVersionNumber installedVersion = QVersionNumber::fromString(installed());
    return !installedVersion.isNull() && installedVersion > QVersionNumber::fromString(m_running);
}

std::string_view Updates::status() const
{
    if (m_confirmed)
        return updateStatus::readyToInstall;
    return isNewerInstalled() ? updateStatus::updateAvailable : updateStatus::noUpdate;
}

void Updates::confirm()
{
    if (m_confirmed || !isNewerInstalled())
        return;
    qCInfo(lcApp).noquote() << "restarting into Pomvar" << installed()
                            << "once the front end has quit";
    m_confirmed = true;
    m_frontEnd.wait();
}

bool Updates::startInstalledFrontEnd(QString* why) const
{
    const QString program = frontEndProgram();
    QString problem = FrontEndProgram::problem(program);
    if (problem.isEmpty() && !QProcess::startDetached(program, {}))
        problem = tr("%1 could not be started.").arg(program);
    if (problem.isEmpty())
        return true;
    qCWarning(lcApp).noquote() << "not starting the front end:" << problem;
    if (why)
        *why = problem;
    return false;
}

void Updates::watch()
{
    // A file replaced by another (as package managers do) is no longer watched: watch anew.
    if (!m_watcher.files().isEmpty())
        m_watcher.removePaths(m_watcher.files());
    m_watcher.addPath(m_dir);
    if (QFile::exists(versionFile()))
        m_watcher.addPath(versionFile());
}

void Updates::noticeChange()
{
    watch();
    const QString now = installed();
    if (now == m_seen)
        return;
    m_seen = now;
    qCInfo(lcApp).noquote() << "the install folder now holds Pomvar" << now << "(running"
                            << m_running + u')';
    Q_EMIT installedChanged(now);
}

} // namespace pomvar::srv

#include "pomvarsrv/app/FrontEndWatch.h"

#include "pomvarsrv/app/ServerLog.h"

#include <QFile>
#include <QFileInfo>

namespace pomvar::srv {

FrontEndWatch::FrontEndWatch(pid_t startedBy, QString pidFile, QObject* parent)
    : QObject(parent)
    , m_pidFile(std::move(pidFile))
{
    connect(&m_process, &ProcessWatch::ended, this, &FrontEndWatch::ended);
    connect(&m_folders, &QFileSystemWatcher::directoryChanged, this, &FrontEndWatch::follow);
    // The file's folder may not exist yet: its parent says when it does.
    const QFileInfo folder(QFileInfo(m_pidFile).path());
    m_folders.addPath(folder.path());
    if (startedBy > 0 && !m_process.watch(startedBy))
        ended(startedBy);
    follow();
}

pid_t FrontEndWatch::named() const
{
    QFile file(m_pidFile);
    return file.open(QIODevice::ReadOnly) ? pid_t(file.readAll().trimmed().toLongLong()) : 0;
}

void FrontEndWatch::follow()
{
    const QString folder = QFileInfo(m_pidFile).path();
    if (!m_folders.directories().contains(folder) && QFileInfo(folder).isDir())
        m_folders.addPath(folder);
    const pid_t pid = named();
    if (pid <= 0 || (pid == m_process.pid() && m_process.isRunning()))
        return;
    if (!m_process.watch(pid))
        ended(pid); // a file left by a front end that ended before this server watched it
}

void FrontEndWatch::ended(pid_t pid)
{
    if (named() != pid)
        return; // it removed its own, or a later front end wrote its own
    if (QFile::remove(m_pidFile))
        qCWarning(lcApp) << "the front end" << pid << "ended without removing its PID file:"
                         << "removed it";
}

} // namespace pomvar::srv

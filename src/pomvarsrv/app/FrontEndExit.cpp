#include "pomvarsrv/app/FrontEndExit.h"

#include "pomvarsrv/app/ServerLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <climits>
#include <csignal>
#include <unistd.h>

namespace pomvar::srv {

namespace {

constexpr int kPollMs = 50;

} // namespace

FrontEndExit::FrontEndExit(QString pidFile, const QString& program, int graceMs, QObject* parent)
    : QObject(parent)
    , m_pidFile(std::move(pidFile))
    , m_program(QFileInfo(QFileInfo(program).absolutePath()).canonicalFilePath() + u'/' +
                QFileInfo(program).fileName())
    , m_graceMs(graceMs)
{
    m_poll.setInterval(kPollMs);
    connect(&m_poll, &QTimer::timeout, this, &FrontEndExit::check);
    connect(&m_process, &ProcessWatch::ended, this, &FrontEndExit::check);
}

void FrontEndExit::wait()
{
    m_waited.start();
    m_asked = false;
    m_poll.start();
    check();
}

bool FrontEndExit::isFrontEnd(qint64 pid) const
{
    if (pid <= 0)
        return false;
    char target[PATH_MAX];
    const QByteArray link = "/proc/" + QByteArray::number(pid) + "/exe";
    const ssize_t size = ::readlink(link.constData(), target, sizeof target);
    if (size <= 0)
        return false; // gone, or a zombie
    QString running = QString::fromUtf8(target, size);
    running.remove(QStringLiteral(" (deleted)"));
    return running == m_program;
}

void FrontEndExit::check()
{
    QFile file(m_pidFile);
    if (file.open(QIODevice::ReadOnly)) {
        const qint64 pid = file.readAll().trimmed().toLongLong();
        if (isFrontEnd(pid)) {
            if (m_process.pid() != pid || !m_process.isRunning())
                m_process.watch(static_cast<pid_t>(pid));
            if (!m_asked && m_waited.elapsed() >= m_graceMs) {
                qCInfo(lcApp) << "the front end" << pid << "did not quit: asking it to";
                ::kill(static_cast<pid_t>(pid), SIGTERM);
                m_asked = true;
            }
            return;
        }
        qCInfo(lcApp) << "removing the PID file of a front end that is not running" << pid;
        file.remove();
    }
    if (m_process.isRunning())
        return; // its PID file removed, it is ending: its connection may still be open
    m_poll.stop();
    Q_EMIT gone();
}

} // namespace pomvar::srv
